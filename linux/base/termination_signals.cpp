// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/termination_signals.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

namespace chimewerk {

namespace {

FileDescriptor opened(int descriptor, const char* what) {
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return FileDescriptor(descriptor);
}

}  // namespace

TerminationSignals::TerminationSignals(MainQueue& queue, Seconds patience,
                                       std::function<void()> onTerminate) {
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t terminating;
    sigemptyset(&terminating);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&terminating, signal);
    }
    pthread_sigmask(SIG_BLOCK, &terminating, nullptr);
    signals_ = opened(signalfd(-1, &terminating, SFD_CLOEXEC | SFD_NONBLOCK), "signalfd");
    stop_ = opened(eventfd(0, EFD_CLOEXEC), "eventfd");
    thread_ = std::jthread([this, &queue, patience, onTerminate = std::move(onTerminate)] {
        run(queue, patience, onTerminate);
    });
}

TerminationSignals::~TerminationSignals() {
    eventfd_write(stop_.get(), 1);
}

void TerminationSignals::endWithin(Seconds patience) {
    static std::atomic<bool> isEnding{false};
    if (!isEnding.exchange(true)) {
        // Whatever the parent process has set.
        std::signal(SIGALRM, SIG_DFL);
        sigset_t alarms;
        sigemptyset(&alarms);
        sigaddset(&alarms, SIGALRM);
        pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(patience).count();
        itimerval timer{};
        timer.it_value = {.tv_sec = left / 1'000'000, .tv_usec = left % 1'000'000};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
}

void TerminationSignals::run(MainQueue& queue, Seconds patience,
                             const std::function<void()>& onTerminate) const {
    std::array<pollfd, 2> ready{pollfd{.fd = stop_.get(), .events = POLLIN, .revents = 0},
                                pollfd{.fd = signals_.get(), .events = POLLIN, .revents = 0}};
    while (true) {
        if (poll(ready.data(), ready.size(), -1) < 0) {
            continue;  // Interrupted.
        }
        if (ready.front().revents != 0) {
            return;
        }
        signalfd_siginfo received{};
        while (read(signals_.get(), &received, sizeof received) > 0) {
            endWithin(patience);
            queue.post(onTerminate);
        }
    }
}

}  // namespace chimewerk
