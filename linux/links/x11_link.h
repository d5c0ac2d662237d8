// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"
#include "platform/delayed_call.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Frees what xcb has allocated.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeReply>;

/// A connection to an X server that is opened again after the server has restarted: while the
/// server is away, the link retries at intervals. (Uses xcb, because Xlib ends the program when the
/// server ends.) Main thread only; must not be destroyed from within its callbacks.
class X11Link {
public:
    struct Callbacks {
        /// The server is connected. Requests its events; returns false if this server cannot send
        /// them, which closes the link until the next attempt.
        std::function<bool(xcb_connection_t* server, xcb_window_t root)> onOpen;
        /// An event, or an error of a request without a reply. May make requests with replies.
        std::function<void(const xcb_generic_event_t& event)> onEvent;
        /// The server has gone away. May be empty.
        std::function<void()> onLost = {};
    };

    /// `display` has the form of $DISPLAY. The queue must outlive the link. `interval` is the time
    /// between two attempts.
    X11Link(EpollMainQueue& queue, std::string display, Callbacks callbacks,
            Seconds interval = kRetryInterval);
    ~X11Link();
    X11Link(const X11Link&) = delete;
    X11Link& operator=(const X11Link&) = delete;

    /// Tries to open the connection, once. Returns whether it is open.
    bool openOnce();
    /// Opens the connection now or as soon as the server is available, and again after each loss.
    void keepOpen();
    void close();

    /// The connection; null while the link is closed.
    xcb_connection_t* server() const { return server_.get(); }
    xcb_window_t root() const { return root_; }

    /// Calls `onEvent` for the events that have arrived. Call this after waiting for a reply
    /// outside `onEvent`: events that arrived with the reply do not make the connection
    /// readable again.
    void handleEvents();

private:
    struct Disconnect {
        void operator()(xcb_connection_t* server) const { xcb_disconnect(server); }
    };

    void disconnect();

    EpollMainQueue& queue_;
    const std::string display_;
    const Callbacks callbacks_;
    std::unique_ptr<xcb_connection_t, Disconnect> server_;
    // Destroyed before the connection that it watches.
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    xcb_window_t root_ = XCB_NONE;
    bool wanted_ = false;
    DelayedCall retry_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
