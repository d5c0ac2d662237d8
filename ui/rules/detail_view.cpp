// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/detail_view.h"

#include <algorithm>

#include "sound/bundled_sounds.h"
#include "ui/rules/detail_texts.h"
#include "ui/rules/value_texts.h"

namespace chimewerk {

namespace {

bool hasOwnSound(const SoundEvent& event, const DetailFacts& facts) {
    return event.soundPath && !event.soundPath->empty() && facts.files.fileExists(*event.soundPath);
}

/// Returns the source of the sound of an event without a file of its own.
std::string givenSoundText(const SoundEvent& event, const DetailFacts& facts) {
    if (facts.isCustomThemeActive) {
        return "— not set — (click Load to add)";
    }
    const auto exists = [&facts](const std::string& path) { return facts.files.fileExists(path); };
    if (facts.currentTheme != SoundTheme::system) {
        if (!facts.resourceFolder.empty() &&
            exists(themeSoundFile(facts.resourceFolder, facts.currentTheme, event.id))) {
            return std::string(displayName(facts.currentTheme));
        }
    } else if (std::ranges::any_of(defaultSoundFiles(facts.resourceFolder, event.id), exists)) {
        return "Bundled default";
    }
    return filled("System ({})", event.systemFallback);
}

DetailBox boxOf(const SoundEvent& event, const DetailFacts& facts) {
    if (event.id == event_ids::kLidAngle) {
        return facts.isAppleSilicon ? DetailBox::threshold : DetailBox::intelLock;
    }
    if (event.id == event_ids::kKeyPress) {
        return DetailBox::permission;
    }
    if (event.id == event_ids::kSlap) {
        return DetailBox::microphone;
    }
    return event.id == event_ids::kBatteryLow ? DetailBox::batteryThreshold : DetailBox::none;
}

std::string lidAngleDesc(const DetailFacts& facts) {
    return facts.sensorFound
               ? "Plays when the lid crosses the angle threshold below (sensor active ✓)."
               : "⚠\uFE0F Sensor not found on this Mac — requires Apple Silicon (M1 or later). Lid angle detection is not available on Intel Macs.";
}

std::string keyPressDesc(const DetailFacts& facts) {
    if (facts.tapActive) {
        return "Tap active ✓ — vintage mechanical click on every keypress (regular, Space, Return variants).";
    }
    return facts.trusted
               ? "Vintage mechanical click on every keypress. Waiting for tap to initialize…"
               : "⚠\uFE0F Accessibility access required. Click \"Open Accessibility Settings…\" below. If Chimewerk is already in the list, remove it (−) first, then relaunch the app.";
}

std::string batteryLowDesc(const DetailFacts& facts) {
    constexpr float kUnknown = 20.0F;
    const auto battery = std::ranges::find(facts.events, event_ids::kBatteryLow, &SoundEvent::id);
    return filled(
        "Plays once when battery drops to or below {} while unplugged. Threshold adjustable via the slider.",
        percentText(battery == facts.events.end() ? kUnknown : battery->threshold));
}

std::string silenceText(const SoundEvent& event, const DetailFacts& facts) {
    // The lid's angle has a description of its own for that.
    if (!facts.missingHardware.empty() && event.id != event_ids::kLidAngle) {
        return std::string(detail_texts::kNotOnThisMachine) + facts.missingHardware;
    }
    return event.isEnabled && facts.waitsForRestart ? std::string(detail_texts::kWaitsForRestart)
                                                    : "";
}

/// An event whose description never changes.
struct FixedDesc {
    std::string_view id;
    std::string_view text;
};

constexpr FixedDesc kFixedDescs[] = {
    {event_ids::kSlap, "Plays when a strong knock is detected on the microphone."},
    {event_ids::kLidOpen, "Plays when the lid opens and the screen turns on."},
    {event_ids::kLidClose, "Plays when the lid closes and the screen turns off."},
    {event_ids::kChargerConnect, "Plays when the charger cable is plugged in."},
    {event_ids::kChargerDisconnect, "Plays when the charger cable is unplugged."},
    {event_ids::kBrightnessUp, "Plays when screen brightness is increased."},
    {event_ids::kBrightnessDown, "Plays when screen brightness is decreased."},
    {event_ids::kVolumeUp,
     "Plays when system output volume is increased (≥ 3% change, polls every 250 ms)."},
    {event_ids::kVolumeDown,
     "Plays when system output volume is decreased (≥ 3% change, polls every 250 ms)."},
    {event_ids::kScreenshot,
     "Plays when a new Screenshot file appears on the Desktop (Command+Shift+3/4/5)."},
    {event_ids::kAppLaunch, "Plays whenever any application finishes launching."},
    {event_ids::kTrashEmpty,
     "Plays when the Trash is emptied. Disables the macOS Finder crumple sound while enabled so only the app's sound plays."},
    {event_ids::kTrashAdd, "Plays when a file or folder is moved to the Trash."},
    {event_ids::kNetworkUp,
     "Plays when internet connectivity is restored (polls every 2.5 s via SCNetworkReachability)."},
    {event_ids::kNetworkDown,
     "Plays when internet connectivity is lost (polls every 2.5 s via SCNetworkReachability)."},
    {event_ids::kUsbConnect,
     "Plays when a USB or Thunderbolt device is connected (IOKit matching notification)."},
};

}  // namespace

DetailView detailView(const SoundEvent& event, const DetailFacts& facts) {
    constexpr double kDimmed = 0.6;
    const DetailBox box = boxOf(event, facts);
    const bool locked = box == DetailBox::intelLock;
    const bool own = hasOwnSound(event, facts);
    return {.emoji = event.emoji,
            .title = event.label,
            .soundText =
                own ? "📁 " + lastPathComponent(*event.soundPath) : givenSoundText(event, facts),
            .hasOwnSound = own,
            .volume = event.volume,
            .volumeText = volumeText(event.volume),
            .triggerText = triggerDesc(event, facts),
            .silenceText = silenceText(event, facts),
            .counterText = counterText(event.triggerCount),
            .switchIsOn = event.isEnabled && !locked,
            .switchIsEnabled = !locked,
            .alpha = event.isEnabled ? 1.0 : kDimmed,
            .box = box,
            .canGrant = !facts.trusted,
            .mayUseMicrophone = facts.mayUseMicrophone,
            .thresholdIsEnabled = facts.sensorFound,
            .threshold = event.threshold,
            .thresholdText = box == DetailBox::threshold ? degreesText(event.threshold)
                                                         : percentText(event.threshold)};
}

std::string triggerDesc(const SoundEvent& event, const DetailFacts& facts) {
    if (event.id == event_ids::kLidAngle) {
        return lidAngleDesc(facts);
    }
    if (event.id == event_ids::kKeyPress) {
        return keyPressDesc(facts);
    }
    if (event.id == event_ids::kBatteryLow) {
        return batteryLowDesc(facts);
    }
    const auto* const found = std::ranges::find(kFixedDescs, event.id, &FixedDesc::id);
    return found == std::end(kFixedDescs) ? "" : std::string(found->text);
}

}  // namespace chimewerk
