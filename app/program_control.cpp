// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/program_control.h"

#include <algorithm>

#include "sound/notifications.h"

namespace chimewerk {

namespace {

/// Returns the theme's shown name without the emoji before it.
std::string shownName(SoundTheme theme) {
    const std::string_view shown = displayName(theme);
    const std::size_t space = shown.find(' ');
    return std::string(space == std::string_view::npos ? shown : shown.substr(space + 1));
}

std::string unknown(const char* kind, const std::string& typed, std::span<const Name> names) {
    return std::string("There is no ") + kind + " \"" + typed + "\". " + didYouMean(typed, names);
}

}  // namespace

ProgramControl::ProgramControl(const Dependencies& dependencies)
    : deps_(dependencies), sm_(dependencies.sounds) {
    themes_ = deps_.notifications.observe(themeDidChange, [this](const Notification& /*theme*/) {
        if (onThemeChanged) {
            onThemeChanged();
        }
    });
    mutes_ = deps_.notifications.observe(kMuteDidChange, [this](const Notification& /*mute*/) {
        if (onMuteChanged) {
            onMuteChanged();
        }
    });
    counts_ = deps_.notifications.observe(eventCounterUpdated, [this](const Notification& count) {
        if (const auto* const id = std::any_cast<std::string>(&count.object)) {
            lastHeard_[*id] = deps_.clock.now();
        }
    });
}

RemoteControl::Refusal ProgramControl::play(const std::string& event) {
    Refusal refusal;
    if (const SoundEvent* const found = findEvent(event, refusal)) {
        sm_.playEvent(*found);
    }
    return refusal;
}

RemoteControl::Refusal ProgramControl::setEnabled(const std::string& event, bool enabled) {
    Refusal refusal;
    const SoundEvent* const found = findEvent(event, refusal);
    if (found == nullptr) {
        return refusal;
    }
    if (found->id == event_ids::kLidAngle && !deps_.supportsLidAngle) {
        return "\"" + found->label + "\" is locked: this machine has no sensor in its hinge.";
    }
    deps_.delegate.setEventEnabled(found->id, enabled);
    deps_.notifications.post({.name = kSettingsDidChange});
    return std::nullopt;
}

RemoteControl::Refusal ProgramControl::setTheme(const std::string& theme) {
    const std::vector<Name> names = themeNames();
    const auto byId = std::ranges::find(sm_.customThemes, theme, &CustomTheme::id);
    std::size_t index =
        kAllThemes.size() + static_cast<std::size_t>(byId - sm_.customThemes.begin());
    if (byId == sm_.customThemes.end()) {
        const auto found = findName(theme, names);
        if (!found) {
            return unknown("theme", theme, names);
        }
        index = *found;
    }
    if (index < kAllThemes.size()) {
        sm_.setTheme(kAllThemes.at(index));
    } else {
        sm_.setCustomTheme(sm_.customThemes.at(index - kAllThemes.size()));
    }
    return std::nullopt;
}

RemoteControl::Refusal ProgramControl::setMuted(bool muted) {
    sm_.setMuted(muted);
    return std::nullopt;
}

RemoteControl::Refusal ProgramControl::toggleMuted(bool& isMutedNow) {
    isMutedNow = !sm_.isMuted();
    return setMuted(isMutedNow);
}

RemoteControl::Refusal ProgramControl::readState(RemoteState& state) {
    state = {.isMuted = sm_.isMuted(), .theme = selectedTheme()};
    for (Name& one : themeNames()) {
        state.themes.push_back(std::move(one.name));
    }
    for (const SoundEvent& event : sm_.events) {
        state.events.push_back({.id = event.id,
                                .label = event.label,
                                .isEnabled = event.isEnabled,
                                .volume = static_cast<double>(event.volume),
                                .count = event.triggerCount,
                                .sound = soundOf(event)});
    }
    return std::nullopt;
}

RemoteControl::Refusal ProgramControl::check(std::vector<RemoteCheck>& checks) {
    checks = {checkOutput()};
    for (const SoundEvent& event : sm_.events) {
        checks.push_back(checkEvent(event));
    }
    return std::nullopt;
}

RemoteCheck ProgramControl::checkOutput() const {
    RemoteCheck check{.id = "sound_output",
                      .label = "Sound Output",
                      .isEnabled = !sm_.isMuted(),
                      .source = deps_.report("sound_output")};
    if (sm_.isMuted()) {
        check.source.missing = "Chimewerk is muted.";
        check.source.advice = "Run: chimewerk --unmute";
    }
    return check;
}

RemoteCheck ProgramControl::checkEvent(const SoundEvent& event) const {
    RemoteCheck check{.id = event.id,
                      .label = event.label,
                      .isEnabled = event.isEnabled,
                      .source = deps_.report(event.id)};
    if (const auto last = lastHeard_.find(event.id); last != lastHeard_.end()) {
        check.secondsAgo = std::max(0.0, Seconds(deps_.clock.now() - last->second).count());
    }
    if (!event.isEnabled || !check.source.missing.empty()) {
        return check;
    }
    const bool isKeyDeaf =
        event.id == event_ids::kKeyPress && !deps_.delegate.keyboardMonitor.active;
    if (isKeyDeaf || deps_.delegate.waitsForRestart(event.id)) {
        check.source.missing =
            "Chimewerk does not listen to it yet, since it was switched on later.";
        check.source.advice = "Run: chimewerk --enable " + event.id;
    } else if (event.volume <= 0) {
        check.source.missing = "Its volume is 0 %.";
        check.source.advice = "Raise it in the dashboard.";
    }
    return check;
}

/// Returns the event that the user means. If there is none, returns null and says so.
const SoundEvent* ProgramControl::findEvent(const std::string& typed, Refusal& refusal) const {
    std::vector<Name> names;
    for (const SoundEvent& event : sm_.events) {
        names.push_back({.name = event.id, .alias = event.label});
    }
    if (const auto index = findName(typed, names)) {
        return &sm_.events[*index];
    }
    refusal = unknown("event", typed, names);
    return nullptr;
}

/// Returns the names of the themes: those of `kAllThemes`, then those of the user's themes.
std::vector<Name> ProgramControl::themeNames() const {
    std::vector<Name> names;
    names.reserve(kAllThemes.size() + sm_.customThemes.size());
    for (const SoundTheme theme : kAllThemes) {
        names.push_back({.name = std::string(rawValue(theme)), .alias = shownName(theme)});
    }
    for (const CustomTheme& theme : sm_.customThemes) {
        names.push_back({.name = theme.name});
    }
    return names;
}

std::string ProgramControl::selectedTheme() const {
    const CustomTheme* const custom = sm_.activeCustomTheme();
    return custom != nullptr ? custom->name : std::string(rawValue(sm_.currentTheme));
}

std::string ProgramControl::soundOf(const SoundEvent& event) const {
    if (event.soundPath && !event.soundPath->empty()) {
        return *event.soundPath;
    }
    const bool hasTheme = !sm_.isCustomThemeActive() && sm_.currentTheme != SoundTheme::system;
    if (hasTheme) {
        return std::string(rawValue(sm_.currentTheme));
    }
    return event.id == event_ids::kKeyPress ? "clicks" : event.systemFallback;
}

}  // namespace chimewerk
