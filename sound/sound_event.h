#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace chimewerk {

/// The settings of one event and how often it has been triggered in this run.
struct SoundEvent {
    /// Short lower-case key, unique among the events; used in settings, custom themes, file names,
    /// notifications.
    std::string id;
    /// The name shown to the user.
    std::string label;
    /// One emoji, shown beside the label.
    std::string emoji;
    /// The alert sound that plays when no file does.
    std::string systemFallback;
    /// Absolute path of the event's own sound file, or of the active custom theme's. None and the empty
    /// string both mean that there is no file.
    std::optional<std::string> soundPath;
    /// 0.0 to 1.0.
    float volume;
    bool isEnabled;
    /// Degrees (0 to 180) for "lid_angle", percent of charge (0 to 100) for "battery_low", 0 for every other
    /// event.
    float threshold;
    /// Never stored: each run begins at 0.
    std::int64_t triggerCount = 0;

    bool operator==(const SoundEvent&) const = default;
};

}  // namespace chimewerk
