#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "platform/clock.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// The sensor in the lid's hinge. Main thread only.
class LidSensorSource {
public:
    /// One raw input report, its identifier first. The bytes are valid during the call only.
    using ReportHandler = std::function<void(std::span<const std::uint8_t> report)>;
    using FoundHandler = std::function<void(bool found)>;

    virtual ~LidSensorSource() = default;

    /// Wakes the sensor, opens it and hands each of its reports to `onReport` on the main thread until
    /// `close()`; never from within this call. Returns whether there is a sensor and it opened. Where a
    /// sensor may come later or go away, `onFound` is then told on the main thread. A source that is open
    /// already stays so and returns true.
    virtual bool open(ReportHandler onReport, FoundHandler onFound) = 0;

    /// Ends the reports, from this call on; nothing when the source is not open.
    virtual void close() = 0;
};

/// Announces each angle of the lid and plays "lid_angle" when the lid crosses a threshold in either
/// direction, at most once in 0.8 s. Main thread only; call `stop()` before the source goes away.
class LidAngleMonitor {
public:
    /// What the monitor needs of its dependencies; all of it outlives the monitor.
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

    /// Whether the sensor exists and could be opened; follows it when it comes or goes while the monitor is
    /// started.
    bool sensorFound = false;

    /// Sets the threshold, in degrees, and begins to listen; `sensorFound` tells the outcome.
    void start(float threshold);

    /// The threshold from the next sample on, in degrees. Moving it across the lid's present angle plays
    /// nothing.
    void updateThreshold(float threshold) { angleThreshold = threshold; }

    /// Ends the listening. The last angle is kept for the next start, and `sensorFound` stays as it is.
    void stop() { deps_.sensor.close(); }

private:
    void takeReport(std::span<const std::uint8_t> report);
    void processAngle(float angle);

    Dependencies deps_;
    /// Negative until there has been a sample.
    float lastAngle_ = -1.0F;
    WallTime lastTrigger_ = kDistantPast;
    Lifeline lifeline_;
};

}  // namespace chimewerk
