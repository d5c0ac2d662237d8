// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string_view>

#include "platform/clock.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// The sensor in the lid's hinge. Main thread only.
class LidSensorSource {
public:
    /// The angle between lid and keyboard, in whole degrees, 0 to 511.
    using AngleHandler = std::function<void(float degrees)>;
    using FoundHandler = std::function<void(bool found)>;

    virtual ~LidSensorSource() = default;

    /// Wakes and opens the sensor. Returns whether there is one and it opened. Calls `onAngle`
    /// with each reading until `close()`, and `onFound` when the sensor appears or disappears
    /// later; both on the main thread, never from within this call. On an open source it only
    /// replaces the handlers.
    virtual bool open(AngleHandler onAngle, FoundHandler onFound) = 0;

    /// No handler is called after this. Does nothing when the source is not open.
    virtual void close() = 0;

    /// What the sensor is, in a few words.
    virtual std::string_view name() const { return "hinge sensor"; }
};

/// Posts each angle of the lid and plays "lid_angle" when the lid crosses the threshold in
/// either direction, at most once in 0.8 s. Main thread only; call `stop()` before the source
/// is destroyed.
class LidAngleMonitor {
public:
    /// All of these must outlive the monitor.
    struct Dependencies {
        MainQueue& queue;
        const Clock& clock;
        NotificationCenter& notifications;
        SoundManager& sounds;
        LidSensorSource& sensor;
    };

    explicit LidAngleMonitor(const Dependencies& dependencies) : deps_(dependencies) {}

    /// The angle whose crossing plays the event, in degrees.
    float angleThreshold = 90.0F;

    /// Whether the sensor exists and was opened. Kept up to date while the monitor is started.
    bool sensorFound = false;

    /// Sets the threshold, in degrees, opens the sensor and sets `sensorFound`.
    void start(float threshold);

    /// Sets the threshold, in degrees, for the samples from now on. Moving it across the current
    /// angle plays nothing.
    void updateThreshold(float threshold) { angleThreshold = threshold; }

    /// Closes the sensor. The last angle and `sensorFound` are kept.
    void stop() { deps_.sensor.close(); }

private:
    void processAngle(float angle);

    Dependencies deps_;
    /// Negative until the first sample.
    float lastAngle_ = -1.0F;
    WallTime lastTrigger_ = kDistantPast;
    Lifeline lifeline_;
};

}  // namespace chimewerk
