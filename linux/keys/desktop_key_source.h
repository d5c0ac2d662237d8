// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/desktop/session_environment.h"
#include "linux/keys/reporting_key_source.h"

namespace chimewerk {

/// Receives keys by the first method that works: the X server in an X11 session, which also gets
/// the keys of remote desktops and on-screen keyboards; else the kernel's event devices if they are
/// readable. If neither works it is not trusted and creates no tap.
class DesktopKeySource final : public KeySource, public ReportsItself {
public:
    /// Makes the source that reads event devices.
    using MakeSource = std::function<std::unique_ptr<ReportingKeySource>()>;

    /// `makeEventDevices` is called once, and only where the X server does not work. The queue must
    /// outlive the source and its taps.
    DesktopKeySource(EpollMainQueue& queue, const SessionEnvironment& environment,
                     MakeSource makeEventDevices);

    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;
    /// The report of the first that works, else of the event devices.
    SourceReport report() override;

private:
    ReportingKeySource& eventDevices();

    /// Null outside of X11 sessions.
    std::unique_ptr<ReportingKeySource> x11_;
    const MakeSource makeEventDevices_;
    /// Made when first needed.
    std::unique_ptr<ReportingKeySource> eventDevices_;
};

}  // namespace chimewerk
