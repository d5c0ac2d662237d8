// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sound/sound_event.h"

namespace chimewerk {

std::vector<SoundEvent> factoryEvents() {
    using namespace event_ids;
    struct Row {
        std::string_view id;
        const char* label;
        const char* emoji;
        const char* systemFallback;
        float volume;
        bool isEnabled;
        float threshold;
    };
    static constexpr Row kRows[] = {
        {kSlap, "Single Knock", "👊", "Funk", 1.0F, true, 0.0F},
        {kLidOpen, "Lid Open", "📂", "Basso", 1.0F, true, 0.0F},
        {kLidClose, "Lid Close", "📁", "Pop", 1.0F, true, 0.0F},
        {kLidAngle, "Lid at Angle", "📐", "Purr", 1.0F, false, 90.0F},
        {kChargerConnect, "Charger Connect", "🔌", "Glass", 1.0F, true, 0.0F},
        {kChargerDisconnect, "Charger Disconnect", "🔋", "Blow", 1.0F, true, 0.0F},
        {kBrightnessUp, "Brightness Up", "🔆", "Tink", 0.5F, true, 0.0F},
        {kBrightnessDown, "Brightness Down", "🔅", "Tink", 0.5F, true, 0.0F},
        {kKeyPress, "Key Press", "⌨\uFE0F", "Tink", 0.3F, false, 0.0F},
        {kVolumeUp, "Volume Up", "🔊", "Tink", 0.5F, false, 0.0F},
        {kVolumeDown, "Volume Down", "🔇", "Tink", 0.5F, false, 0.0F},
        {kScreenshot, "Screenshot", "📸", "Pop", 0.8F, false, 0.0F},
        {kAppLaunch, "App Launch", "🚀", "Tink", 0.4F, false, 0.0F},
        {kTrashEmpty, "Empty Trash", "🗑\uFE0F", "Blow", 0.7F, true, 0.0F},
        {kTrashAdd, "Trash Item Added", "📥", "Tink", 0.5F, true, 0.0F},
        {kNetworkUp, "Network Connect", "📶", "Glass", 0.6F, false, 0.0F},
        {kNetworkDown, "Network Disconnect", "📵", "Blow", 0.6F, false, 0.0F},
        {kBatteryLow, "Battery Low", "🪫", "Sosumi", 0.9F, true, 20.0F},
        {kUsbConnect, "USB Connected", "🖥\uFE0F", "Tink", 0.6F, false, 0.0F},
    };

    std::vector<SoundEvent> events;
    events.reserve(std::size(kRows));
    for (const Row& row : kRows) {
        events.push_back(SoundEvent{.id = std::string(row.id),
                                    .label = row.label,
                                    .emoji = row.emoji,
                                    .systemFallback = row.systemFallback,
                                    .soundPath = {},
                                    .volume = row.volume,
                                    .isEnabled = row.isEnabled,
                                    .threshold = row.threshold});
    }
    return events;
}

}  // namespace chimewerk
