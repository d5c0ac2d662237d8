// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "monitors/microphone.h"
#include "support/journal.h"

namespace chimewerk {

/// A microphone that gets its buffers from the test.
class FakeMicrophone final : public Microphone, public Noting {
public:
    Authorization access = Authorization::authorized;
    /// Whether engines start.
    bool works = true;
    /// The pending permission callback; the test calls it.
    std::function<void(bool granted)> waiting;
    std::size_t enginesMade = 0;
    std::size_t askedFrames = 0;

    Authorization authorization() override { return access; }
    void requestAccess(std::function<void(bool granted)> answered) override {
        waiting = std::move(answered);
    }
    std::unique_ptr<AudioEngine> makeEngine() override {
        note("microphone");
        ++enginesMade;
        return std::make_unique<Engine>(*this);
    }

    /// Returns the number of running engines.
    std::size_t listening() const { return running_.size(); }
    /// Returns the number of engines with a tap, running or not.
    std::size_t taps() const { return taps_; }
    /// Sends one buffer to every running engine.
    void send(AudioEngine::FirstChannel samples) {
        for (Engine* const engine : running_) {
            engine->tap(samples);
        }
    }
    /// Sends a buffer with this peak.
    void send(float peak) {
        const std::vector<float> samples{0.0F, peak, 0.0F};
        send(samples);
    }

private:
    class Engine final : public AudioEngine {
    public:
        explicit Engine(FakeMicrophone& microphone) : microphone_(microphone) {}
        Engine(const Engine&) = delete;
        Engine& operator=(const Engine&) = delete;
        ~Engine() override {
            stop();
            removeTap();
        }

        void installTap(std::size_t frames, Tap installed) override {
            microphone_.askedFrames = frames;
            ++microphone_.taps_;
            tap = std::move(installed);
        }
        void removeTap() override {
            if (std::exchange(tap, nullptr)) {
                microphone_.note("-tap");
                --microphone_.taps_;
            }
        }
        bool start() override {
            if (microphone_.works) {
                microphone_.running_.push_back(this);
            }
            return microphone_.works;
        }
        void stop() override {
            if (std::erase(microphone_.running_, this) != 0) {
                microphone_.note("-engine");
            }
        }

        Tap tap;

    private:
        FakeMicrophone& microphone_;
    };

    std::vector<Engine*> running_;
    std::size_t taps_ = 0;
};

}  // namespace chimewerk
