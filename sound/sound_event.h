// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// The settings of one event and how often it has been triggered in this run.
struct SoundEvent {
    /// One of `event_ids`: the event's key in settings, custom themes, file names
    /// and notifications.
    std::string id;
    /// The name shown to the user.
    std::string label;
    /// One emoji, shown beside the label.
    std::string emoji;
    /// The alert sound that plays when no file does.
    std::string systemFallback;
    /// Absolute path of the event's own sound file, or of the active custom theme's. None and the
    /// empty string both mean that there is no file.
    std::optional<std::string> soundPath;
    /// 0.0 to 1.0.
    float volume;
    bool isEnabled;
    /// Degrees (0 to 180) for `kLidAngle`, percent of charge (0 to 100) for `kBatteryLow`, 0 for
    /// every other event.
    float threshold;
    /// Never stored: each run begins at 0.
    std::int64_t triggerCount = 0;

    bool operator==(const SoundEvent&) const = default;
};

/// The identifiers of the events. They are stored in the users' settings, so they never change.
namespace event_ids {

inline constexpr std::string_view kSlap = "slap";
inline constexpr std::string_view kLidOpen = "lid_open";
inline constexpr std::string_view kLidClose = "lid_close";
inline constexpr std::string_view kLidAngle = "lid_angle";
inline constexpr std::string_view kChargerConnect = "charger_connect";
inline constexpr std::string_view kChargerDisconnect = "charger_disconnect";
inline constexpr std::string_view kBrightnessUp = "brightness_up";
inline constexpr std::string_view kBrightnessDown = "brightness_down";
inline constexpr std::string_view kKeyPress = "key_press";
inline constexpr std::string_view kVolumeUp = "volume_up";
inline constexpr std::string_view kVolumeDown = "volume_down";
inline constexpr std::string_view kScreenshot = "screenshot";
inline constexpr std::string_view kAppLaunch = "app_launch";
inline constexpr std::string_view kTrashEmpty = "trash_empty";
inline constexpr std::string_view kTrashAdd = "trash_add";
inline constexpr std::string_view kNetworkUp = "network_up";
inline constexpr std::string_view kNetworkDown = "network_down";
inline constexpr std::string_view kBatteryLow = "battery_low";
inline constexpr std::string_view kUsbConnect = "usb_connect";

}  // namespace event_ids

/// The 19 events in their order, with factory settings.
std::vector<SoundEvent> factoryEvents();

}  // namespace chimewerk
