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

/// Hears knocks on the computer's body: a loud peak that comes after a quiet stretch, and not
/// within a moment of the knock before. Keeps no sound; each buffer becomes one number. Main thread
/// only, but for `analyzeBuffer()` and the atomics.
class KnockDetector {
public:
    /// A moment on the steady clock. If the wall clock were put back by an hour, it would suppress
    /// all knocks of that hour.
    using Time = std::chrono::steady_clock::time_point;

    /// `now` may be called on any thread. Queue and microphone outlive the detector.
    KnockDetector(MainQueue& queue, Microphone& microphone,
                  std::function<Time()> now = std::chrono::steady_clock::now);
    KnockDetector(const KnockDetector&) = delete;
    KnockDetector& operator=(const KnockDetector&) = delete;
    /// Ends the listening; knocks that were heard but not reported yet are dropped.
    ~KnockDetector();

    /// A knock was heard. Called on the main thread.
    std::function<void()> onKnock;

    /// What a buffer's peak must exceed; taken from the next buffer on.
    std::atomic<float> slapThreshold = 0.7F;

    /// Listens if that is allowed; if the user has not been asked yet, asks, and listens
    /// when allowed.
    void setupMicrophoneDetection();
    /// Listens with a new engine, replacing any that is there. One that does not start
    /// stays silent.
    void startAudio();
    /// Gives up the engine, and listens with a new one if that is allowed now.
    void restartAudio();
    /// Ends the listening.
    void stop();

    /// Takes one buffer's samples, if there are any to be read: reports a knock in them, and
    /// remembers how loud they were. Called by the engine on its thread; one call at a time.
    void analyzeBuffer(AudioEngine::FirstChannel samples);

    /// The peak level of the buffers so far, smoothed. It survives a restart.
    float previousAmplitude() const { return previousAmplitude_.load(std::memory_order_relaxed); }
    /// When the last knock was heard; a century ago when there has been none.
    Time lastSlapTime() const { return lastSlapTime_.load(std::memory_order_relaxed); }

private:
    /// The least time between two knocks.
    static constexpr Seconds slapCooldown{0.08};
    /// A century before the clock's zero; not its minimum, from which no time span could
    /// be computed.
    static constexpr Time kLongAgo{-std::chrono::hours{24 * 36525}};

    void knocked();

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
