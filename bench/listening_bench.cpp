// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures what listening for knocks costs the audio server's client thread: processor time and
// wake-ups per second, over as many seconds as the argument says. Needs a private session.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "linux/base/epoll_main_queue.h"
#include "linux/microphone/pulse_microphone.h"
#include "monitors/knock_detector.h"
#include "tools/audio/microphone_feeder.h"

namespace chimewerk {
namespace {

struct Spent {
    double milliseconds = 0;
    double wakeUps = 0;
};

/// Returns what the thread of this name has used since it started.
Spent spentBy(const std::string& threadName) {
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(thread.path() / "comm"), name);
        if (name != threadName) {
            continue;
        }
        Spent spent;
        std::ifstream(thread.path() / "schedstat") >> spent.milliseconds;
        spent.milliseconds /= 1e6;
        std::ifstream status(thread.path() / "status");
        for (std::string word; status >> word;) {
            if (word == "voluntary_ctxt_switches:") {
                status >> spent.wakeUps;
            }
        }
        return spent;
    }
    return {};
}

void listen(int seconds) {
    using namespace std::chrono_literals;
    const char* const fifo = std::getenv("CHIMEWERK_MICROPHONE");
    const MicrophoneFeeder feeder(fifo != nullptr ? fifo : "");
    EpollMainQueue queue;
    PulseConnection connection;
    connection.open();
    PulseMicrophone microphone(connection);
    KnockDetector detector(queue, microphone);
    for (const bool listening : {false, true}) {
        if (listening) {
            detector.setupMicrophoneDetection();
        }
        std::this_thread::sleep_for(2s);
        const Spent before = spentBy("chimewerk-audio");
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        const Spent after = spentBy("chimewerk-audio");
        std::printf("%s: %.2f ms of processor time and %.1f wake-ups a second\n",
                    listening ? "listening" : "not listening",
                    (after.milliseconds - before.milliseconds) / seconds,
                    (after.wakeUps - before.wakeUps) / seconds);
    }
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    chimewerk::listen(argc > 1 ? std::max(1, std::atoi(argv[1])) : 60);
    return 0;
}
