// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/microphone/microphone_choice.h"

#include <string_view>

namespace chimewerk {

namespace {

/// If no microphone has this rate, the server converts from a source's own rate to this one.
constexpr std::uint32_t kUsualRate = 48000;
constexpr std::uint32_t kLowestRate = 8000;
constexpr std::uint32_t kHighestRate = 96000;

std::string_view property(const pa_source_info& source, const char* name) {
    const char* const value =
        source.proplist != nullptr ? pa_proplist_gets(source.proplist, name) : nullptr;
    return value != nullptr ? value : std::string_view();
}

/// Recording from a Bluetooth headset switches it to the sound quality of a telephone. Some of its
/// sources can only be recognised by their names, and filters by the name of their own source.
bool isBluetooth(const pa_source_info& source) {
    const std::string_view filtered = property(source, "device.master_device");
    return property(source, PA_PROP_DEVICE_BUS) == "bluetooth" ||
           property(source, PA_PROP_DEVICE_API).starts_with("bluez") ||
           std::string_view(source.name).starts_with("bluez_") || filtered.starts_with("bluez_");
}

bool isMonitor(const pa_source_info& source) {
    return source.monitor_of_sink != PA_INVALID_INDEX ||
           property(source, PA_PROP_DEVICE_CLASS) == "monitor";
}

/// Whether the source is a part of the computer, so that it hears knocks on it.
bool isBuiltIn(const pa_source_info& source) {
    const std::string_view form = property(source, PA_PROP_DEVICE_FORM_FACTOR);
    const std::string_view bus = property(source, PA_PROP_DEVICE_BUS);
    return form == "internal" || (form.empty() && (bus == "pci" || bus == "platform"));
}

bool isPluggedIn(const pa_source_info& source) {
    return source.active_port == nullptr || source.active_port->available != PA_PORT_AVAILABLE_NO;
}

}  // namespace

void MicrophoneChoice::consider(const pa_source_info& source) {
    if (source.name == nullptr || source.channel_map.channels == 0 || isMonitor(source) ||
        isBluetooth(source)) {
        return;
    }
    const bool isDefault = source.name == defaultSource_;
    const Rank rank{isPluggedIn(source) && isBuiltIn(source), isDefault, isPluggedIn(source),
                    (source.flags & PA_SOURCE_HARDWARE) != 0};
    if (best_ && rank <= rank_) {
        return;
    }
    const std::uint32_t rate = source.sample_spec.rate;
    best_ = {.index = source.index,
             .name = source.name,
             .rate = rate < kLowestRate || rate > kHighestRate ? kUsualRate : rate,
             .firstChannel = source.channel_map.map[0]};
    rank_ = rank;
}

}  // namespace chimewerk
