// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdint>

namespace chimewerk {

/// An X client that presses keys through the server's test extension. Its focused window receives
/// them; without a focused window the server may not deliver key events.
class FakeXInput {
public:
    explicit FakeXInput(const char* display = nullptr) : server_(xcb_connect(display, nullptr)) {
        const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(server_)).data;
        const xcb_window_t window = xcb_generate_id(server_);
        const std::uint32_t unmanaged = 1;
        xcb_create_window(server_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 50, 50, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                          XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        xcb_map_window(server_, window);
        xcb_set_input_focus(server_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        sync();
    }
    FakeXInput(const FakeXInput&) = delete;
    FakeXInput& operator=(const FakeXInput&) = delete;
    ~FakeXInput() { xcb_disconnect(server_); }

    bool works() const { return xcb_connection_has_error(server_) == 0; }

    /// Both take the kernel's key codes.
    void press(unsigned key) { send(XCB_KEY_PRESS, key); }
    void release(unsigned key) { send(XCB_KEY_RELEASE, key); }
    void tap(unsigned key) {
        press(key);
        release(key);
    }
    /// Returns once the server has handled all requests.
    void sync() {
        std::free(xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
    }
    xcb_connection_t* server() const { return server_; }

private:
    void send(std::uint8_t type, unsigned key) {
        constexpr unsigned kServerOffset = 8;
        xcb_test_fake_input(server_, type, static_cast<std::uint8_t>(key + kServerOffset),
                            XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        xcb_flush(server_);
    }

    xcb_connection_t* const server_;
};

}  // namespace chimewerk
