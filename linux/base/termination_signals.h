// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <thread>

#include "linux/base/file_descriptor.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, and ignores SIGPIPE. Create it
/// before starting any other thread, because threads inherit the blocked signals.
class TerminationSignals {
public:
    /// Calls `onTerminate` on the main thread for each of these signals. If the process still runs
    /// `patience` after the first of them, it is killed. The queue must outlive the object.
    /// Throws std::system_error if the system has no descriptors or threads left.
    TerminationSignals(MainQueue& queue, Seconds patience, std::function<void()> onTerminate);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

    /// Kills the process by SIGALRM `patience` from now, if it still runs then. Later calls
    /// change nothing. Any thread.
    static void endWithin(Seconds patience);

private:
    void run(MainQueue& queue, Seconds patience, const std::function<void()>& onTerminate) const;

    FileDescriptor signals_;
    FileDescriptor stop_;
    // Receives the signals even while the main thread waits for a file system that does not answer.
    std::jthread thread_;
};

}  // namespace chimewerk
