// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "linux/links/x11_link.h"

namespace chimewerk {

/// An X11 client with its own windows.
class X11Client {
public:
    explicit X11Client(const char* display = nullptr) : server_(xcb_connect(display, nullptr)) {}
    X11Client(const X11Client&) = delete;
    X11Client& operator=(const X11Client&) = delete;
    /// Returns once the server has removed the windows.
    ~X11Client() {
        for (const xcb_window_t window : opened_) {
            xcb_destroy_window(server_, window);
        }
        const XcbReply<xcb_get_input_focus_reply_t> answered(
            xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
        xcb_disconnect(server_);
    }

    /// Opens a window, of this type if one is given, and with what `prepare` adds.
    xcb_window_t open(const char* type = nullptr,
                      const std::function<void(xcb_window_t)>& prepare = {}) {
        const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(server_)).data;
        const xcb_window_t window = xcb_generate_id(server_);
        xcb_create_window(server_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 60, 60, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        if (type != nullptr) {
            set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atom(type));
        }
        if (prepare) {
            prepare(window);
        }
        xcb_map_window(server_, window);
        xcb_flush(server_);
        opened_.push_back(window);
        return window;
    }
    /// Opens a window of a program that runs on another machine.
    xcb_window_t openFromElsewhere(xcb_window_t leader = XCB_NONE) {
        return open(nullptr, [this, leader](xcb_window_t window) {
            setText(window, "WM_CLIENT_MACHINE", XCB_ATOM_STRING, "elsewhere");
            if (leader != XCB_NONE) {
                set(window, "WM_CLIENT_LEADER", XCB_ATOM_WINDOW, leader);
            }
        });
    }
    void setText(xcb_window_t window, const char* property, xcb_atom_t type,
                 std::string_view text) {
        xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    }
    void set(xcb_window_t window, const char* property, xcb_atom_t type, std::uint32_t value) {
        xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32, 1,
                            &value);
        xcb_flush(server_);
    }
    void setClientList(const std::vector<xcb_window_t>& windows) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        xcb_change_property(server_, XCB_PROP_MODE_REPLACE, root, atom("_NET_CLIENT_LIST"),
                            XCB_ATOM_WINDOW, 32, static_cast<std::uint32_t>(windows.size()),
                            windows.data());
        xcb_flush(server_);
    }
    /// Returns whether the window manager lists the window.
    bool isListed(xcb_window_t window) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        const XcbReply<xcb_get_property_reply_t> list(xcb_get_property_reply(
            server_,
            xcb_get_property(server_, 0, root, atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 0, 65536),
            nullptr));
        const auto* const windows =
            static_cast<const xcb_window_t*>(xcb_get_property_value(list.get()));
        return std::find(windows, windows + list->value_len, window) != windows + list->value_len;
    }
    void close(xcb_window_t window) {
        xcb_destroy_window(server_, window);
        xcb_flush(server_);
    }

    xcb_atom_t atom(const char* name) {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            server_,
            xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(std::string(name).size()), name),
            nullptr));
        return reply->atom;
    }

private:
    xcb_connection_t* const server_;
    std::vector<xcb_window_t> opened_;
};

}  // namespace chimewerk
