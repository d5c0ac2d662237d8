// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstddef>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace chimewerk {

/// Writes the sound of a fake microphone into the FIFO of an audio server's pipe source, in real
/// time: silence, and knocks on demand. While nothing reads the FIFO, the sound is lost.
class MicrophoneFeeder {
public:
    explicit MicrophoneFeeder(std::string fifo, std::size_t rate = 48000, std::size_t channels = 1)
        : fifo_(std::move(fifo)), rate_(rate), channels_(channels) {}

    /// Adds one knock with a peak of 0.9 to one channel. Any thread.
    void knock(std::size_t channel = 0) {
        channel_ = channel;
        knocking_ = true;
    }

private:
    static constexpr std::chrono::milliseconds kPace{10};
    static constexpr std::size_t kPartsPerSecond = std::chrono::seconds(1) / kPace;

    void feed(const std::stop_token& stop) {
        // The server may close the FIFO between the opening and the writing.
        sigset_t brokenPipe{};
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        std::vector<float> part(rate_ / kPartsPerSecond * channels_);
        auto due = std::chrono::steady_clock::now();
        while (!stop.stop_requested()) {
            std::ranges::fill(part, 0.0F);
            if (knocking_.exchange(false)) {
                strike(part);
            }
            const int end = open(fifo_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            if (end >= 0) {
                const std::size_t bytes = part.size() * sizeof(float);
                [[maybe_unused]] const auto written = write(end, part.data(), bytes);
                close(end);
            }
            std::this_thread::sleep_until(due += kPace);
        }
    }
    /// Adds a blow that rings for about a millisecond.
    void strike(std::vector<float>& part) const {
        for (std::size_t i = channel_; i < part.size(); i += channels_) {
            const std::size_t frame = i / channels_;
            const double seconds = static_cast<double>(frame) / static_cast<double>(rate_);
            part[i] =
                static_cast<float>(-0.9 * std::exp(-seconds / 0.001) * std::cos(seconds * 5000));
        }
    }

    const std::string fifo_;
    const std::size_t rate_;
    const std::size_t channels_;
    std::atomic<bool> knocking_ = false;
    std::atomic<std::size_t> channel_ = 0;
    std::jthread thread_{[this](const std::stop_token& stop) { feed(stop); }};
};

}  // namespace chimewerk
