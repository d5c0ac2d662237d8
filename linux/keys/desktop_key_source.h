// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/desktop/session_environment.h"
#include "monitors/keyboard_monitor.h"
#include "platform/source_report.h"

namespace chimewerk {

/// Receives keys by the first method that works: the X server in an X11 session, which also gets
/// the keys of remote desktops and on-screen keyboards; else the kernel's event devices if they are
/// readable. If neither works it is not trusted and creates no tap.
class DesktopKeySource final : public KeySource, public ReportsItself {
public:
    /// The queue must outlive the source and its taps.
    DesktopKeySource(EpollMainQueue& queue, const SessionEnvironment& environment,
                     const std::string& inputFolder = "/dev/input");

    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;
    /// The report of the first that works, else of the last.
    SourceReport report() override;

private:
    struct Row {
        std::unique_ptr<KeySource> source;
        /// The same object.
        ReportsItself* reporter;
    };

    template <typename Source>
    void add(std::unique_ptr<Source> source) {
        ReportsItself* const reporter = source.get();
        rows_.push_back({.source = std::move(source), .reporter = reporter});
    }

    /// In order of preference; never empty.
    std::vector<Row> rows_;
};

}  // namespace chimewerk
