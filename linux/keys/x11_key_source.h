// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"
#include "linux/keys/reporting_key_source.h"

namespace chimewerk {

/// Receives the keys of an X11 session, whichever window has the focus, as raw events of the X
/// Input extension (2.1 or later, which delivers them despite other clients' grabs). Needs no
/// permission. Reconnects when the server returns.
///
/// The server sends no raw events for the repeats of a held key. This source makes them, with the
/// server's delay and rate, for the keys that the server repeats.
class X11KeySource final : public ReportingKeySource {
public:
    /// `display` has the form of $DISPLAY. Do not use the server for the X11 programs of a Wayland
    /// session: it receives only keys meant for those programs. The queue must outlive the source
    /// and its taps. `retryInterval` is the time between two attempts to reach the server.
    X11KeySource(EpollMainQueue& queue, std::string display,
                 Seconds retryInterval = kRetryInterval);

    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;
    SourceReport report() override { return {.mechanism = "X11"}; }

private:
    EpollMainQueue& queue_;
    const std::string display_;
    const Seconds retryInterval_;
};

}  // namespace chimewerk
