// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "linux/base/retry_interval.h"
#include "linux/keys/key_repeat.h"
#include "linux/links/wayland_link.h"

namespace chimewerk {

/// Reads a Wayland session's settings for key repeats, which the compositor tells every client that
/// has a keyboard object, with or without the focus. Main thread only; must not be destroyed
/// from within its callback.
class WaylandRepeatInfo {
public:
    using OnSettings = std::function<void(const KeyRepeat::Settings&)>;

    /// Calls `onSettings` when the settings are known, and when they change or the
    /// compositor repeats them. `display` has the form of $WAYLAND_DISPLAY. The queue must
    /// outlive the object. `retryInterval` is the time between two attempts to reach the compositor.
    WaylandRepeatInfo(EpollMainQueue& queue, const std::string& display, OnSettings onSettings,
                      Seconds retryInterval = kRetryInterval);

private:
    void bind(std::uint32_t name, std::string_view interface, std::uint32_t version);
    void setCapabilities(std::uint32_t capabilities);
    void setRepeats(std::int32_t rate, std::int32_t delay);
    static const wl_seat_listener& seatListener();
    static const wl_keyboard_listener& keyboardListener();

    const OnSettings onSettings_;
    WaylandProxy<wl_seat> seat_;
    WaylandProxy<wl_keyboard> keyboard_;
    // Destroyed before what lives on it, which it has destroyed then.
    WaylandLink link_;
};

}  // namespace chimewerk
