// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/x11_link.h"

#include <utility>

namespace chimewerk {

namespace {

xcb_window_t rootOf(xcb_connection_t* server, int screen) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(server));
    while (screen-- > 0 && screens.rem > 1) {
        xcb_screen_next(&screens);
    }
    return screens.data->root;
}

}  // namespace

X11Link::X11Link(EpollMainQueue& queue, std::string display, Callbacks callbacks, Seconds interval)
    : queue_(queue),
      display_(std::move(display)),
      callbacks_(std::move(callbacks)),
      retry_(queue, interval, [this] {
          if (wanted_) {
              keepOpen();
          }
      }) {}

X11Link::~X11Link() = default;

void X11Link::keepOpen() {
    wanted_ = true;
    if (!openOnce()) {
        retry_.schedule();
    }
}

void X11Link::close() {
    wanted_ = false;
    disconnect();
}

void X11Link::disconnect() {
    watch_ = nullptr;
    server_ = nullptr;
    root_ = XCB_NONE;
}

bool X11Link::openOnce() {
    if (server_) {
        return true;
    }
    int screen = 0;
    server_.reset(xcb_connect(display_.c_str(), &screen));
    if (xcb_connection_has_error(server_.get()) == 0) {
        root_ = rootOf(server_.get(), screen);
        watch_ = queue_.watch(xcb_get_file_descriptor(server_.get()), [this] { handleEvents(); });
        if (watch_ && callbacks_.onOpen(server_.get(), root_)) {
            // Events may have come with the replies that `onOpen` waited for.
            queue_.post(lifeline_.guard([this] { handleEvents(); }));
            return true;
        }
    }
    disconnect();
    return false;
}

void X11Link::handleEvents() {
    while (server_) {
        const XcbReply<xcb_generic_event_t> event(xcb_poll_for_event(server_.get()));
        if (!event) {
            break;
        }
        callbacks_.onEvent(*event);
    }
    if (server_ &&
        (xcb_flush(server_.get()) <= 0 || xcb_connection_has_error(server_.get()) != 0)) {
        disconnect();
        if (callbacks_.onLost) {
            callbacks_.onLost();
        }
        retry_.schedule();
    }
}

}  // namespace chimewerk
