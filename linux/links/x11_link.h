#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Frees what xcb has allocated.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeReply>;

/// A connection to an X server that outlives the server: when the server goes away the link looks for it
/// every 3 s and opens anew. (xcb, because Xlib ends the program with the server.) Main thread only; must not
/// be destroyed from within its callbacks.
class X11Link {
public:
    struct Callbacks {
        /// The server is there. Tells it what is wanted; false when this server cannot give it, which closes
        /// the link until the next look.
        std::function<bool(xcb_connection_t* server, xcb_window_t root)> onOpen;
        /// An event, or an error that no request waits for. Requests with replies may be made in it.
        std::function<void(const xcb_generic_event_t& event)> onEvent;
        /// The server has gone away. May be empty.
        std::function<void()> onLost = {};
    };

    /// `display` as in $DISPLAY. The queue outlives the link.
    X11Link(EpollMainQueue& queue, std::string display, Callbacks callbacks);
    ~X11Link();
    X11Link(const X11Link&) = delete;
    X11Link& operator=(const X11Link&) = delete;

    /// Opens now or not at all. Whether it is open.
    bool openOnce();
    /// Opens now, or else as soon as the server is there.
    void keepOpen();
    void close();

    /// The connection while the link is open, else null.
    xcb_connection_t* server() const { return server_.get(); }
    xcb_window_t root() const { return root_; }

    /// Hands on the events that have come. To be called where a reply was waited for outside `onEvent`:
    /// events that came along with it do not make the connection readable again.
    void handleEvents();

private:
    struct Disconnect {
        void operator()(xcb_connection_t* server) const { xcb_disconnect(server); }
    };

    void disconnect();
    void retryLater();

    EpollMainQueue& queue_;
    const std::string display_;
    const Callbacks callbacks_;
    std::unique_ptr<xcb_connection_t, Disconnect> server_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;  // ends before the connection that it watches
    xcb_window_t root_ = XCB_NONE;
    bool wanted_ = false;
    bool retrying_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
