// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// What the brightness monitor sees of the display. Main thread only.
class BrightnessSource {
public:
    virtual ~BrightnessSource() = default;

    /// The built-in display's brightness at this moment, 0 to 1; none when there is no such display
    /// or it cannot be read. Returns without waiting, and is cheap enough for four calls a second.
    virtual std::optional<float> brightness() = 0;
};

/// Reports the display getting brighter or darker. Compares with the level of the last event, so
/// that slow changes add up. Main thread only.
class BrightnessMonitor {
public:
    BrightnessMonitor(MainQueue& queue, BrightnessSource& display);

    /// The brightness rose by more than 0.03 since the last event.
    std::function<void()> onUp;
    /// The brightness fell by more than 0.03 since the last event.
    std::function<void()> onDown;

    /// Takes the present level as the reference and polls every 0.25 s. Call it once before
    /// `stop()`.
    void start();

    /// Ends the polling.
    void stop() { poller_.stop(); }

private:
    void poll();

    BrightnessSource& display_;
    /// Negative until there has been a reading.
    float last_ = -1.0F;
    Poller poller_;
};

}  // namespace chimewerk
