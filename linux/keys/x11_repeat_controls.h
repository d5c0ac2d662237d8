// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <xcb/xcb.h>

#include <cstdint>

#include "linux/keys/key_repeat.h"

namespace chimewerk {

/// Reads an X server's settings for key repeats, through its keyboard extension. Main thread only.
class X11RepeatControls {
public:
    /// Requests events for changes of the settings.
    void subscribe(xcb_connection_t* server);

    bool haveChanged(const xcb_generic_event_t& event) const;

    /// Returns the current settings; no repeats if the server does not answer.
    KeyRepeat::Settings read(xcb_connection_t* server) const;

private:
    /// The number of the extension's events; 0 without the extension.
    std::uint8_t event_ = 0;
};

}  // namespace chimewerk
