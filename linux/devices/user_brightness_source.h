// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "monitors/brightness_monitor.h"

namespace chimewerk {

/// The brightness as the user has set it. A desktop dims the display while nobody is there, and
/// undoes that when somebody is: the level before is held meanwhile. Where the desktop does not
/// tell how long nobody has been there, it is that of the display.
class UserBrightnessSource final : public BrightnessSource {
public:
    /// How long the user has touched nothing; none if that is unknown.
    using IdleTime = std::optional<std::chrono::milliseconds>;
    /// Calls its argument once, with the idle time now; or drops it for that of a later call.
    using AskIdleTime = std::function<void(std::function<void(IdleTime)>)>;

    /// The display must outlive the source, which sets its announcements.
    UserBrightnessSource(BrightnessSource& display, AskIdleTime askIdleTime);

    std::optional<float> brightness() override;
    bool announcesChanges() const override { return display_.announcesChanges(); }

private:
    void judge(IdleTime idle);

    BrightnessSource& display_;
    const AskIdleTime askIdleTime_;
    /// The last reading.
    std::optional<float> reading_;
    /// What was told of it.
    std::optional<float> told_;
};

}  // namespace chimewerk
