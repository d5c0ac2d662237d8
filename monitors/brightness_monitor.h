// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include "platform/main_queue.h"
#include "platform/polled_source.h"
#include "platform/poller.h"

namespace chimewerk {

/// Reads the brightness of the display. Main thread only.
class BrightnessSource : public PolledSource {
public:
    /// Returns the built-in display's current brightness on a scale of length 1; none if there is
    /// no such display or it cannot be read. Only differences matter. Does not block; cheap enough
    /// for four calls a second.
    virtual std::optional<float> brightness() = 0;
};

/// Reports that the display became brighter or darker. Compares with the level of the last event,
/// so slow changes add up. Main thread only.
class BrightnessMonitor {
public:
    BrightnessMonitor(MainQueue& queue, BrightnessSource& display);

    /// Called when the brightness has risen by more than 0.03 since the last event.
    std::function<void()> onUp;
    /// Called when the brightness has fallen by more than 0.03 since the last event.
    std::function<void()> onDown;

    /// Takes the current level as the reference and polls every 0.25 s, while the source may have
    /// changed. Call once before `stop()`.
    void start();

    /// Stops polling.
    void stop() { poller_.stop(); }

private:
    void poll();

    BrightnessSource& display_;
    /// None until the first reading.
    std::optional<float> last_;
    Poller poller_;
};

}  // namespace chimewerk
