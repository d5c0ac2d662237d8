// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/microphone_choice.h"

namespace chimewerk {

namespace {

/// If no microphone has this rate, the server converts from a source's own rate to this one.
constexpr std::uint32_t kUsualRate = 48000;
constexpr std::uint32_t kLowestRate = 8000;
constexpr std::uint32_t kHighestRate = 96000;

bool isPluggedIn(const pa_source_info& source) {
    return source.active_port == nullptr || source.active_port->available != PA_PORT_AVAILABLE_NO;
}

}  // namespace

void MicrophoneChoice::consider(const pa_source_info& source) {
    if (source.monitor_of_sink != PA_INVALID_INDEX || source.name == nullptr ||
        source.channel_map.channels == 0) {
        return;
    }
    const Rank rank{source.name == defaultSource_, isPluggedIn(source),
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
