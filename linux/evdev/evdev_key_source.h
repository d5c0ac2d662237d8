// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/evdev/active_seat.h"
#include "linux/keys/reporting_key_source.h"

namespace chimewerk {

/// Receives keys from the kernel through libevdev, whichever window has the focus, from every
/// readable event device with a typing key. A keyboard that is plugged in or becomes readable
/// later is added; one that becomes unreadable, because another user's session comes to the
/// foreground, is closed until it is readable again. Keys are ignored while no session of this user
/// is in the foreground. When a keyboard is unplugged or fails, the
/// tap calls `onDisabled` and goes on with the others. Grabs nothing, and does nothing while no
/// key is pressed.
///
/// The repeats of a held key are the kernel's, or where the session's compositor tells how it repeats
/// keys, made like that: toolkits make their own in each program.
///
/// libevdev rather than libinput: one descriptor per keyboard, without touchpads, seats and timers.
class EvdevKeySource final : public ReportingKeySource {
public:
    /// `waylandDisplay` has the form of $WAYLAND_DISPLAY; it may be empty. `folder` is the folder of
    /// the kernel's input devices. The queue must outlive the source and its taps.
    EvdevKeySource(EpollMainQueue& queue, std::string waylandDisplay,
                   std::string folder = "/dev/input", ActiveSeat::Logind logind = {});

    /// Returns whether at least one keyboard is readable, or there is none at all now that this
    /// process may not read.
    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;
    SourceReport report() override;

private:
    EpollMainQueue& queue_;
    const std::string waylandDisplay_;
    const std::string folder_;
    const ActiveSeat::Logind logind_;
};

}  // namespace chimewerk
