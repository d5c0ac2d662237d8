// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <string_view>

/// The fixed texts of the panel that shows one event's settings.
namespace chimewerk::detail_texts {

inline constexpr std::string_view kSoundSection = "🎵  Sound File";
inline constexpr std::string_view kLoadButton = "Load .mp3 / .wav";
inline constexpr std::string_view kTestButton = "▶  Test Sound";
inline constexpr std::string_view kRemoveButton = "✕ Remove";
inline constexpr std::string_view kVolumeSection = "🔊  Volume";
inline constexpr std::string_view kTriggerSection = "ℹ\uFE0F  When It Triggers";
inline constexpr std::string_view kWaitsForRestart =
    "🔁  On, but silent until Chimewerk is quit and started again.";
/// Before a sentence that says which hardware is missing.
inline constexpr std::string_view kNotOnThisMachine = "🚫  Not on this machine. ";
inline constexpr std::string_view kAngleSection = "📐  Trigger Angle";
inline constexpr std::string_view kBatterySection = "🪫  Alert Threshold";

inline constexpr std::string_view kPermission =
    "⚠\uFE0F  Accessibility access required. Click below to open System Settings → Privacy & Security → Accessibility. If Chimewerk already appears in the list, remove it (−) first, then relaunch the app — macOS resets permissions when the binary changes.";
inline constexpr std::string_view kGrantButton = "Open Accessibility Settings…";

inline constexpr std::string_view kLock = "🔒";
inline constexpr std::string_view kLockTitle = "Not Supported on Intel";
inline constexpr std::string_view kLockText =
    "The lid angle sensor (IOKit HID) is only available on Apple Silicon Macs (M1 and later). This feature cannot be used on Intel-based Macs.";

inline constexpr std::string_view kLoadErrorTitle = "Could Not Load Sound";
inline constexpr std::string_view kNotASound =
    "The file could not be read by the audio engine. Try converting it to WAV or AIFF format first.";
/// With the system's description of the error.
inline constexpr std::string_view kNotCopied = "Could not copy the file: {}";

/// The extensions of files that can be loaded, in lower case; upper case works too.
inline constexpr std::array<std::string_view, 8> kSoundFileTypes = {"mp3",  "wav", "aiff", "m4a",
                                                                    "flac", "ogg", "oga",  "opus"};

}  // namespace chimewerk::detail_texts
