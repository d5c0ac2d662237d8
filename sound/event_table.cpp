#include "sound/event_table.h"

namespace chimewerk {

std::vector<SoundEvent> factoryEvents() {
    struct Row {
        const char* id;
        const char* label;
        const char* emoji;
        const char* systemFallback;
        float volume;
        bool isEnabled;
        float threshold;
    };
    static constexpr Row kRows[] = {
        {"slap", "Single Knock", "👊", "Funk", 1.0F, true, 0.0F},
        {"lid_open", "Lid Open", "📂", "Basso", 1.0F, true, 0.0F},
        {"lid_close", "Lid Close", "📁", "Pop", 1.0F, true, 0.0F},
        {"lid_angle", "Lid at Angle", "📐", "Purr", 1.0F, false, 90.0F},
        {"charger_connect", "Charger Connect", "🔌", "Glass", 1.0F, true, 0.0F},
        {"charger_disconnect", "Charger Disconnect", "🔋", "Blow", 1.0F, true, 0.0F},
        {"brightness_up", "Brightness Up", "🔆", "Tink", 0.5F, true, 0.0F},
        {"brightness_down", "Brightness Down", "🔅", "Tink", 0.5F, true, 0.0F},
        {"key_press", "Key Press", "⌨\uFE0F", "Tink", 0.3F, false, 0.0F},
        {"volume_up", "Volume Up", "🔊", "Tink", 0.5F, false, 0.0F},
        {"volume_down", "Volume Down", "🔇", "Tink", 0.5F, false, 0.0F},
        {"screenshot", "Screenshot", "📸", "Pop", 0.8F, false, 0.0F},
        {"app_launch", "App Launch", "🚀", "Tink", 0.4F, false, 0.0F},
        {"trash_empty", "Empty Trash", "🗑\uFE0F", "Blow", 0.7F, true, 0.0F},
        {"trash_add", "Trash Item Added", "📥", "Tink", 0.5F, true, 0.0F},
        {"network_up", "Network Connect", "📶", "Glass", 0.6F, false, 0.0F},
        {"network_down", "Network Disconnect", "📵", "Blow", 0.6F, false, 0.0F},
        {"battery_low", "Battery Low", "🪫", "Sosumi", 0.9F, true, 20.0F},
        {"usb_connect", "USB Connected", "🖥\uFE0F", "Tink", 0.6F, false, 0.0F},
    };

    std::vector<SoundEvent> events;
    events.reserve(std::size(kRows));
    for (const Row& row : kRows) {
        events.push_back(SoundEvent{.id = row.id,
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
