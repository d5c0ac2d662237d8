// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/knock_detector.h"

#include <utility>

#include "monitors/peak_magnitude.h"

namespace chimewerk {

namespace {

constexpr std::size_t kBufferFrames = 512;
/// A peak counts as a knock only after a level below this; above it, the peak is part of a noise.
constexpr float kQuietLimit = 0.25F;
constexpr float kOldWeight = 0.75F;
constexpr float kNewWeight = 0.25F;

}  // namespace

KnockDetector::KnockDetector(MainQueue& queue, Microphone& microphone, std::function<Time()> now)
    : queue_(queue), microphone_(microphone), now_(std::move(now)) {}

KnockDetector::~KnockDetector() {
    // Ends the tap, which uses the other members, before them.
    audioEngine_ = nullptr;
}

void KnockDetector::setupMicrophoneDetection() {
    switch (microphone_.authorization()) {
        case Microphone::Authorization::notDetermined:
            microphone_.requestAccess([&queue = queue_, start = lifeline_.guard([this] {
                restartAudio();
            })](bool granted) {
                if (granted) {
                    queue.post(start);
                }
            });
            break;
        case Microphone::Authorization::authorized:
            startAudio();
            break;
        case Microphone::Authorization::denied:
            break;
    }
}

void KnockDetector::startAudio() {
    audioEngine_ = nullptr;  // Two engines would call `analyzeBuffer()` at the same time.
    audioEngine_ = microphone_.makeEngine();
    audioEngine_->installTap(kBufferFrames,
                             [this](AudioEngine::FirstChannel samples) { analyzeBuffer(samples); });
    audioEngine_->start();
}

void KnockDetector::restartAudio() {
    stop();
    audioEngine_ = nullptr;
    if (microphone_.authorization() == Microphone::Authorization::authorized) {
        startAudio();
    }
}

void KnockDetector::stop() {
    if (audioEngine_) {
        audioEngine_->stop();
        audioEngine_->removeTap();
    }
}

void KnockDetector::analyzeBuffer(AudioEngine::FirstChannel samples) {
    if (!samples) {
        return;
    }
    const float peak = peakMagnitude(*samples);
    const float level = previousAmplitude();
    if (peak > slapThreshold.load(std::memory_order_relaxed) && level < kQuietLimit) {
        const Time now = now_();
        if (now - lastSlapTime() > slapCooldown) {
            lastSlapTime_.store(now, std::memory_order_relaxed);
            queue_.post(lifeline_.guard([this] { knocked(); }));
        }
    }
    previousAmplitude_.store(level * kOldWeight + peak * kNewWeight, std::memory_order_relaxed);
}

void KnockDetector::knocked() const {
    if (onKnock) {
        onKnock();
    }
}

}  // namespace chimewerk
