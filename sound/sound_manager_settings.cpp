// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Stores the settings, and restores them even if they are damaged.
#include <algorithm>
#include <utility>

#include "sound/sound_manager.h"

namespace chimewerk {

namespace {

constexpr std::string_view kEventsKey = "ChimewerkEvents";
constexpr std::string_view kThemeKey = "ChimewerkTheme";
constexpr std::string_view kCustomThemesKey = "ChimewerkCustomThemes";
constexpr std::string_view kActiveCustomThemeKey = "ChimewerkActiveCustomTheme";

/// Returns the string stored under `key`; none when something else is stored there.
std::optional<std::string> storedString(const DefaultsStore& defaults, std::string_view key) {
    const auto object = defaults.object(key);
    const auto* const text = object ? std::get_if<std::string>(&object->value) : nullptr;
    return text == nullptr ? std::nullopt : std::optional(*text);
}

/// Returns the entry of this name if it has this type, else null.
template <typename Value>
const Value* entryOf(const DefaultsDictionary& dictionary, std::string_view name) {
    const auto found = dictionary.find(name);
    return found == dictionary.end() ? nullptr : std::get_if<Value>(&found->second.value);
}

DefaultsDictionary settingsOf(const SoundEvent& event) {
    return {{"path", {event.soundPath.value_or("")}},
            {"volume", {static_cast<double>(event.volume)}},
            {"enabled", {event.isEnabled}},
            {"threshold", {static_cast<double>(event.threshold)}}};
}

/// Returns whether every value is a dictionary. If one is not, even that of an unknown event, the
/// settings of all events are ignored.
bool holdsOnlyDictionaries(const DefaultsDictionary& settings) {
    return std::ranges::all_of(settings, [](const auto& entry) {
        return std::holds_alternative<DefaultsDictionary>(entry.second.value);
    });
}

void apply(const DefaultsDictionary& settings, SoundEvent& event) {
    const auto* const path = entryOf<std::string>(settings, "path");
    event.soundPath = path == nullptr || path->empty() ? std::nullopt : std::optional(*path);
    if (const auto* const volume = entryOf<double>(settings, "volume")) {
        event.volume = static_cast<float>(*volume);
    }
    if (const auto* const enabled = entryOf<bool>(settings, "enabled")) {
        event.isEnabled = *enabled;
    } else if (const auto* const number = entryOf<double>(settings, "enabled");
               number != nullptr && (*number == 0.0 || *number == 1.0)) {
        event.isEnabled = *number == 1.0;
    }
    if (const auto* const threshold = entryOf<double>(settings, "threshold")) {
        event.threshold = static_cast<float>(*threshold);
    }
}

}  // namespace

void SoundManager::save() {
    DefaultsDictionary settings;
    for (const SoundEvent& event : events) {
        settings.emplace(event.id, DefaultsValue{settingsOf(event)});
    }
    deps_.defaults.setObject(kEventsKey, DefaultsValue{std::move(settings)});
    deps_.defaults.setObject(kThemeKey, DefaultsValue{std::string(rawValue(currentTheme))});
    // Encoding a long list takes too long for the main thread.
    if (savedThemes_ != customThemes) {
        savedThemes_ = customThemes;
        deps_.defaults.setData(kCustomThemesKey, [themes = customThemes] {
            return DefaultsData{encodeCustomThemes(themes)};
        });
    }
    deps_.defaults.setObject(
        kActiveCustomThemeKey,
        activeCustomThemeID ? std::optional(DefaultsValue{*activeCustomThemeID}) : std::nullopt);
}

void SoundManager::load() {
    loadCustomThemes();
    loadEvents();
    auto selected = storedString(deps_.defaults, kActiveCustomThemeKey);
    if (const CustomTheme* const theme = selected ? findCustomTheme(*selected) : nullptr) {
        activeCustomThemeID = std::move(selected);
        currentTheme = SoundTheme::system;
        applySounds(*theme);
        return;
    }
    if (const auto raw = storedString(deps_.defaults, kThemeKey)) {
        currentTheme = themeFromRawValue(*raw).value_or(currentTheme);
    }
}

void SoundManager::loadCustomThemes() {
    const auto object = deps_.defaults.object(kCustomThemesKey);
    if (!object) {
        return;
    }
    const auto* const data = std::get_if<DefaultsData>(&object->value);
    if (auto themes = data == nullptr ? std::nullopt : decodeCustomThemes(data->bytes)) {
        customThemes = std::move(*themes);
    } else {
        deps_.defaults.keepDamaged();
    }
}

void SoundManager::loadEvents() {
    const auto object = deps_.defaults.object(kEventsKey);
    if (!object) {
        return;
    }
    const auto* const settings = std::get_if<DefaultsDictionary>(&object->value);
    if (settings == nullptr || !holdsOnlyDictionaries(*settings)) {
        deps_.defaults.keepDamaged();
        return;
    }
    for (SoundEvent& event : events) {
        if (const auto* const own = entryOf<DefaultsDictionary>(*settings, event.id)) {
            apply(*own, event);
        }
    }
}

}  // namespace chimewerk
