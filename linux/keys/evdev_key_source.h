// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "monitors/keyboard_monitor.h"

namespace chimewerk {

/// Hears keys from the kernel through libevdev, whatever window has the focus: from each event
/// device that has a typing key and that this process may read. A keyboard that is plugged in or
/// becomes readable later is heard from then on; one that becomes unreadable, because another user
/// takes over the screen, is closed until it is readable again. When a keyboard is unplugged or
/// breaks, the tap calls `onDisabled` and goes on with the others. Grabs nothing, and does nothing
/// while no key is pressed.
///
/// libevdev rather than libinput: one descriptor per keyboard, without touchpads, seats and timers.
class EvdevKeySource final : public KeySource {
public:
    /// `folder` is where the kernel's input devices are. The queue outlives the source and
    /// its taps.
    explicit EvdevKeySource(EpollMainQueue& queue, std::string folder = "/dev/input");

    /// Whether at least one keyboard can be read.
    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;

private:
    EpollMainQueue& queue_;
    const std::string folder_;
};

}  // namespace chimewerk
