// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/source_report.h"

namespace chimewerk {

/// One event, as other programs see it.
struct RemoteEvent {
    std::string id = {};
    /// The name shown to the user.
    std::string label = {};
    bool isEnabled = false;
    /// 0.0 to 1.0.
    double volume = 0.0;
    /// How often it has happened in this run while it was on.
    std::int64_t count = 0;
    /// What plays: the absolute path of a file, the name of a theme or of an alert sound, or
    /// "clicks".
    std::string sound = {};

    bool operator==(const RemoteEvent&) const = default;
};

/// The program, as other programs see it.
struct RemoteState {
    bool isMuted = false;
    /// The selected theme, one of `themes`.
    std::string theme = {};
    /// The names of all themes; the built-in ones come first.
    std::vector<std::string> themes = {};
    std::vector<RemoteEvent> events = {};

    bool operator==(const RemoteState&) const = default;
};

/// One event, and how it is heard.
struct RemoteCheck {
    std::string id = {};
    std::string label = {};
    bool isEnabled = false;
    SourceReport source = {};
    /// How long ago it last happened while it was on; none if not in this run.
    std::optional<double> secondsAgo = {};

    bool operator==(const RemoteCheck&) const = default;
};

/// What other programs may ask of the running one. Main thread only.
class RemoteControl {
public:
    /// Why a request was not carried out, in sentences for the user; none if it was.
    using Refusal = std::optional<std::string>;

    RemoteControl() = default;
    RemoteControl(const RemoteControl&) = delete;
    RemoteControl& operator=(const RemoteControl&) = delete;
    virtual ~RemoteControl() = default;

    /// Plays the event's sound, even if the event is off, and does not count it.
    virtual Refusal play(const std::string& event) = 0;
    virtual Refusal setEnabled(const std::string& event, bool enabled) = 0;
    virtual Refusal setTheme(const std::string& theme) = 0;
    /// A mute lasts until it is taken back, or until the program ends.
    virtual Refusal setMuted(bool muted) = 0;
    /// Also says which of the two holds now.
    virtual Refusal toggleMuted(bool& isMutedNow) = 0;
    virtual Refusal readState(RemoteState& state) = 0;
    /// Reports on each event. The first entry is no event but the sound output, with the id
    /// "sound_output"; it is enabled unless the program is muted.
    virtual Refusal check(std::vector<RemoteCheck>& checks) = 0;
};

}  // namespace chimewerk
