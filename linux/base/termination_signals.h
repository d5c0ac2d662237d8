#pragma once

#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, and makes SIGPIPE harmless. Make it
/// before the first thread is started: threads inherit that the signals are blocked.
class TerminationSignals {
public:
    /// `onTerminate` runs on the main thread at each of the signals. Throws std::system_error when the system
    /// has no descriptors left.
    TerminationSignals(EpollMainQueue& queue, EpollMainQueue::Job onTerminate);

private:
    FileDescriptor signals_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
