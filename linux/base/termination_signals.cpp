// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/termination_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace chimewerk {

TerminationSignals::TerminationSignals(EpollMainQueue& queue, EpollMainQueue::Job onTerminate) {
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t terminating;
    sigemptyset(&terminating);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&terminating, signal);
    }
    pthread_sigmask(SIG_BLOCK, &terminating, nullptr);
    signals_ = FileDescriptor(signalfd(-1, &terminating, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!signals_) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
    watch_ = queue.watch(signals_.get(), [this, onTerminate = std::move(onTerminate)] {
        signalfd_siginfo received{};
        while (read(signals_.get(), &received, sizeof received) > 0) {
            onTerminate();
        }
    });
}

}  // namespace chimewerk
