// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, and ignores SIGPIPE. Create it
/// before starting any thread, because threads inherit the blocked signals.
class TerminationSignals {
public:
    /// `onTerminate` runs on the main thread for each of these signals. Throws std::system_error if
    /// the system has no descriptors left.
    TerminationSignals(EpollMainQueue& queue, EpollMainQueue::Job onTerminate);

private:
    FileDescriptor signals_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
