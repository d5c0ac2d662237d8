// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_monitor.h"
#include "monitors/brightness_monitor.h"
#include "platform/source_report.h"

namespace chimewerk {

/// The display's brightness from the kernel's backlights. If there are several, follows the one
/// that changed last; before any has changed, a firmware backlight, else a platform one, else one
/// that drives the hardware directly. A backlight of an output that is off comes last.
///
/// When it starts to follow another backlight, it shifts that one's levels so that the brightness
/// does not jump. A shifted level may be outside 0 to 1.
///
/// Reads everything again at each call, so a backlight that is plugged in or out is noticed at the
/// next call. A machine without one has no brightness.
///
/// Announces what udev reports: the kernel sends an event for each level that is set. Where udev
/// does not run there are no events.
class SysfsBacklightSource final : public BrightnessSource, public ReportsItself {
public:
    /// `udevControl` exists while udev runs. The queue must outlive the source.
    explicit SysfsBacklightSource(EpollMainQueue& queue,
                                  std::string folder = "/sys/class/backlight",
                                  std::string udevControl = "/run/udev/control");

    std::optional<float> brightness() override;
    bool announcesChanges() const override;
    SourceReport report() override;

private:
    struct Backlight {
        bool isDark;
        std::size_t rank;
        std::string path;
        float level;
    };

    bool isUdevRunning() const;
    std::vector<Backlight> readAll() const;
    bool hasChanged(const Backlight& backlight) const;
    const Backlight& choose(const std::vector<Backlight>& all) const;

    const std::string folder_;
    const std::string udevControl_;
    /// The path of the backlight that is followed; empty if there is none.
    std::string current_;
    /// The levels at the last call, by path.
    std::map<std::string, float> levels_;
    float shift_ = 0;
    float told_ = 0;
    std::unique_ptr<UdevMonitor> monitor_;
};

}  // namespace chimewerk
