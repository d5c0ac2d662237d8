// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <pulse/pulseaudio.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace chimewerk {

/// The properties of an audio source that a record stream needs.
struct MicrophoneSource {
    std::uint32_t index;
    std::string name;
    std::uint32_t rate;
    pa_channel_position_t firstChannel;
    bool operator==(const MicrophoneSource&) const = default;
};

/// Chooses the microphone among the sources of an audio server: a built-in one if it is plugged in,
/// else the default source, else another source, preferably a hardware device that is plugged in.
/// It never chooses the monitor of a sink, which records what the computer plays, or a Bluetooth
/// headset, which plays in poor quality while it records, not even if that is the default source.
class MicrophoneChoice {
public:
    explicit MicrophoneChoice(std::string_view defaultSource) : defaultSource_(defaultSource) {}

    void consider(const pa_source_info& source);
    const std::optional<MicrophoneSource>& best() const { return best_; }

private:
    using Rank = std::tuple<bool, bool, bool, bool>;

    const std::string defaultSource_;
    std::optional<MicrophoneSource> best_;
    Rank rank_;
};

}  // namespace chimewerk
