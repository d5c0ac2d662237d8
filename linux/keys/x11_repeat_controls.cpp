// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/x11_repeat_controls.h"

// The header is for C and uses a C++ keyword as a field name. (The first pragma is for compilers
// that do not know the warning of the second.)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpragmas"
#pragma GCC diagnostic ignored "-Wkeyword-macro"
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
#pragma GCC diagnostic pop

#include <algorithm>
#include <chrono>

#include "linux/links/x11_link.h"

namespace chimewerk {

void X11RepeatControls::subscribe(xcb_connection_t* server) {
    event_ = 0;
    const auto* const extension = xcb_get_extension_data(server, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    const XcbReply<xcb_xkb_use_extension_reply_t> use(
        xcb_xkb_use_extension_reply(server, xcb_xkb_use_extension(server, 1, 0), nullptr));
    if (use && use->supported != 0) {
        event_ = extension->first_event;
        xcb_xkb_select_events(server, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY,
                              0, XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY, 0, 0, nullptr);
    }
}

bool X11RepeatControls::haveChanged(const xcb_generic_event_t& event) const {
    // The extension stores the type of its event where other events have their detail.
    return event_ != 0 && (event.response_type & 0x7F) == event_ &&
           event.pad0 == XCB_XKB_CONTROLS_NOTIFY;
}

KeyRepeat::Settings X11RepeatControls::read(xcb_connection_t* server) const {
    KeyRepeat::Settings settings;
    if (event_ == 0) {
        return settings;
    }
    const XcbReply<xcb_xkb_get_controls_reply_t> controls(xcb_xkb_get_controls_reply(
        server, xcb_xkb_get_controls(server, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (controls && (controls->enabledControls & XCB_XKB_BOOL_CTRL_REPEAT_KEYS) != 0) {
        settings.delay = std::chrono::milliseconds(controls->repeatDelay);
        settings.interval = std::chrono::milliseconds(controls->repeatInterval);
        std::ranges::copy(controls->perKeyRepeat, settings.keys.begin());
    }
    return settings;
}

}  // namespace chimewerk
