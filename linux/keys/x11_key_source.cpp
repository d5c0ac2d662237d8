// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/x11_key_source.h"

#include <xcb/xinput.h>

#include <optional>
#include <utility>

#include "linux/keys/key_codes.h"
#include "linux/keys/key_repeat.h"
#include "linux/keys/x11_repeat_controls.h"
#include "linux/links/x11_extension.h"
#include "linux/links/x11_link.h"

namespace chimewerk {

namespace {

/// Subscribes to the raw key presses of all keyboards and returns their extension opcode; none if
/// the server cannot send them. Releases would double the wake-ups.
std::optional<std::uint8_t> subscribeToRawKeys(xcb_connection_t* server, xcb_window_t root) {
    static constinit X11Extension input("XInputExtension");
    const auto opcode = input.opcode(server);
    if (!opcode) {
        return std::nullopt;
    }
    xcb_input_xi_query_version_request_t query{};
    query.major_version = 2;
    query.minor_version = 1;
    const auto version = input.ask<xcb_input_xi_query_version_reply_t>(
        server, XCB_INPUT_XI_QUERY_VERSION, X11Extension::bytesOf(query));
    if (!version || version->major_version < 2 ||
        (version->major_version == 2 && version->minor_version < 1)) {
        return std::nullopt;
    }
    struct {
        xcb_input_xi_select_events_request_t head;
        xcb_input_event_mask_t devices;
        std::uint32_t mask;
    } wanted{};
    wanted.head.window = root;
    wanted.head.num_mask = 1;
    wanted.devices = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
    wanted.mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS;
    return input.tell(server, XCB_INPUT_XI_SELECT_EVENTS, X11Extension::bytesOf(wanted))
               ? opcode
               : std::nullopt;
}

class X11KeyTap final : public KeyTap {
public:
    X11KeyTap(EpollMainQueue& queue, const std::string& display, KeyTapCallbacks callbacks,
              Seconds retryInterval)
        : callbacks_(std::move(callbacks)),
          repeat_(queue, [this](std::uint8_t key) { repeat(key); }),
          link_(queue, display,
                {.onOpen = [this](auto* server, auto root) { return subscribe(server, root); },
                 .onEvent = [this](const auto& event) { handle(event); },
                 .onLost = [this] { repeat_.stop(); }},
                retryInterval) {}

    void setEnabled(bool enabled) override {
        if (enabled) {
            link_.keepOpen();
        } else {
            repeat_.stop();
            link_.close();
        }
    }

private:
    bool subscribe(xcb_connection_t* server, xcb_window_t root) {
        const auto opcode = subscribeToRawKeys(server, root);
        if (!opcode) {
            return false;
        }
        opcode_ = *opcode;
        controls_.subscribe(server);
        repeat_.setSettings(controls_.read(server));
        return xcb_flush(server) > 0;
    }

    void handle(const xcb_generic_event_t& event) {
        if (controls_.haveChanged(event)) {
            repeat_.setSettings(controls_.read(link_.server()));
            return;
        }
        if ((event.response_type & 0x7F) != XCB_GE_GENERIC) {
            return;
        }
        const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
        if (raw.extension == opcode_ && raw.event_type == XCB_INPUT_RAW_KEY_PRESS &&
            raw.detail <= 0xFF) {
            const auto key = static_cast<std::uint8_t>(raw.detail);
            report(key);
            repeat_.press(key);
        }
    }

    void report(std::uint8_t key) const {
        if (const auto keyCode =
                key < kX11KeycodeOffset ? std::nullopt : virtualKeyCode(key - kX11KeycodeOffset)) {
            callbacks_.onKeyDown(*keyCode);
        }
    }

    /// Reports a repeat if the server says that the key is still down. Otherwise the repetition
    /// stops.
    void repeat(std::uint8_t key) {
        xcb_connection_t* const server = link_.server();
        const XcbReply<xcb_query_keymap_reply_t> state(
            server == nullptr ? nullptr
                              : xcb_query_keymap_reply(server, xcb_query_keymap(server), nullptr));
        if (state && (state->keys[key / 8] >> (key % 8) & 1) != 0) {
            report(key);
        } else {
            repeat_.stop();
        }
        link_.handleEvents();  // Events may have arrived with the reply.
    }

    const KeyTapCallbacks callbacks_;
    std::uint8_t opcode_ = 0;
    X11RepeatControls controls_;
    KeyRepeat repeat_;
    X11Link link_;
};

}  // namespace

X11KeySource::X11KeySource(EpollMainQueue& queue, std::string display, Seconds retryInterval)
    : queue_(queue), display_(std::move(display)), retryInterval_(retryInterval) {}

bool X11KeySource::trusted() {
    X11Link link(queue_, display_,
                 {.onOpen = [](auto* server,
                               auto root) { return subscribeToRawKeys(server, root).has_value(); },
                  .onEvent = [](const auto&) {}});
    return link.openOnce();
}

std::unique_ptr<KeyTap> X11KeySource::createTap(KeyTapCallbacks callbacks) {
    return trusted()
               ? std::make_unique<X11KeyTap>(queue_, display_, std::move(callbacks), retryInterval_)
               : nullptr;
}

}  // namespace chimewerk
