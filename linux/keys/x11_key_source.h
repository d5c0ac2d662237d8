// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "monitors/keyboard_monitor.h"

namespace chimewerk {

/// Hears the keys of an X11 session, whatever window has the focus, as raw events of the X Input
/// extension (2.1 or later, which delivers them past the grabs of other clients). Needs no
/// permission. Reconnects when the server has gone and comes back.
///
/// The server sends no raw events for the repeats of a held key. They are made here, at the
/// server's own delay and rate, for the keys that it lets repeat.
class X11KeySource final : public KeySource {
public:
    /// `display` as in $DISPLAY. Not for a server that serves the X11 programs of a Wayland
    /// session: it hears only keys that are meant for those. The queue outlives the source and
    /// its taps.
    X11KeySource(EpollMainQueue& queue, std::string display);

    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;

private:
    EpollMainQueue& queue_;
    const std::string display_;
};

}  // namespace chimewerk
