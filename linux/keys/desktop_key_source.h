// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/desktop/session_environment.h"
#include "monitors/keyboard_monitor.h"

namespace chimewerk {

/// Hears keys in the first way that works: the kernel's event devices when they may be read, else
/// the X server of an X11 session. Where neither works it is not trusted and makes no tap.
class DesktopKeySource final : public KeySource {
public:
    /// The queue outlives the source and its taps.
    DesktopKeySource(EpollMainQueue& queue, const SessionEnvironment& environment);

    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;

private:
    std::vector<std::unique_ptr<KeySource>> sources_;
};

}  // namespace chimewerk
