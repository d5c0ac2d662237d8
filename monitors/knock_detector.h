// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "monitors/microphone.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Detects knocks on the computer's body: a loud peak after quiet, and not within the cooldown of
/// the last knock. Stores no sound, only one level per buffer. Main thread only, except for
/// `analyzeBuffer()` and the atomics.
class KnockDetector {
public:
    /// A moment on the steady clock. The wall clock could be set back, which would suppress all
    /// knocks until it had caught up.
    using Time = std::chrono::steady_clock::time_point;

    /// `now` may be called on any thread. `queue` and `microphone` must outlive the detector.
    KnockDetector(MainQueue& queue, Microphone& microphone,
                  std::function<Time()> now = std::chrono::steady_clock::now);
    KnockDetector(const KnockDetector&) = delete;
    KnockDetector& operator=(const KnockDetector&) = delete;
    /// Stops listening; drops knocks that were detected but not yet reported.
    ~KnockDetector();

    /// Called on the main thread when a knock was detected.
    std::function<void()> onKnock;

    /// The level that a knock's peak must exceed. A change takes effect at the next buffer.
    std::atomic<float> slapThreshold = 0.7F;

    /// Starts listening if it is permitted. If the user has not been asked yet, asks first.
    void setupMicrophoneDetection();
    /// Starts listening with a new engine, which replaces the old one. If it fails to start,
    /// nothing is detected.
    void startAudio();
    /// Stops the engine, and starts a new one if listening is permitted now.
    void restartAudio();
    /// Stops listening.
    void stop();

    /// Analyses the samples of one buffer: reports a knock and updates the remembered level. Does
    /// nothing if there are no samples. Called on the engine's thread, one call at a time.
    void analyzeBuffer(AudioEngine::FirstChannel samples);

    /// The smoothed peak level of all buffers so far. Survives a restart.
    float previousAmplitude() const { return previousAmplitude_.load(std::memory_order_relaxed); }
    /// When the last knock was detected; long ago if there was none.
    Time lastSlapTime() const { return lastSlapTime_.load(std::memory_order_relaxed); }

private:
    /// The shortest time between two knocks.
    static constexpr Seconds slapCooldown{0.08};
    /// A century before the clock's epoch. With the clock's minimum, time differences
    /// would overflow.
    static constexpr Time kLongAgo{-std::chrono::hours{24 * 36525}};

    void knocked() const;

    MainQueue& queue_;
    Microphone& microphone_;
    const std::function<Time()> now_;
    std::unique_ptr<AudioEngine> audioEngine_;
    // Written on the engine's thread, read on any.
    std::atomic<float> previousAmplitude_ = 0.0F;
    std::atomic<Time> lastSlapTime_ = kLongAgo;
    Lifeline lifeline_;
};

}  // namespace chimewerk
