// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/base/retry_interval.h"
#include "linux/launches/toplevel_launches.h"
#include "platform/delayed_call.h"

namespace chimewerk {

/// Reports the first window of each process in a session of sway, from the events that sway sends
/// over its own socket. Unlike the Wayland protocols they name the process. The socket may go away
/// and come back. Main thread only; must not be destroyed from within its callback.
class SwayAppLaunches {
public:
    /// `socketPath` is what $SWAYSOCK holds. The queue must outlive the object. `retryInterval` is
    /// the time between two attempts to reach sway.
    SwayAppLaunches(EpollMainQueue& queue, std::string socketPath,
                    ToplevelLaunches::OnFirstWindow onFirstWindow,
                    Seconds retryInterval = kRetryInterval);

private:
    enum class Message : std::uint32_t { subscribe = 2, tree = 4, window = 0x80000003 };

    void open();
    bool connect();
    void receive();
    bool handleReceived();
    void handle(Message type, const std::string& json);
    void close();

    EpollMainQueue& queue_;
    const std::string socketPath_;
    ToplevelLaunches toplevels_;
    FileDescriptor socket_;
    // Destroyed before the socket that it watches.
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    /// Not yet a whole message.
    std::string received_;
    DelayedCall retry_;
};

}  // namespace chimewerk
