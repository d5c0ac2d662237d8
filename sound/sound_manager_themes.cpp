// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The operations that users perform: change an event's settings, select a theme, edit
// custom themes.
#include <utility>

#include "sound/notifications.h"
#include "sound/sound_manager.h"

namespace chimewerk {

void SoundManager::setPath(std::optional<std::string> path, std::string_view id) {
    SoundEvent* const event = findEvent(id);
    if (event == nullptr) {
        return;
    }
    if (CustomTheme* const theme = selectedCustomTheme()) {
        auto sounds = theme->sounds.entries();
        sounds.insert_or_assign(event->id, path.value_or(""));
        theme->sounds = ThemeSounds(std::move(sounds));
    }
    event->soundPath = std::move(path);
    save();
}

void SoundManager::setVolume(float volume, std::string_view id) {
    if (SoundEvent* const event = findEvent(id)) {
        event->volume = volume;
        save();
    }
}

void SoundManager::setThreshold(float value, std::string_view id) {
    if (SoundEvent* const event = findEvent(id)) {
        event->threshold = value;
        save();
    }
}

void SoundManager::setEnabled(bool enabled, std::string_view id) {
    SoundEvent* const event = findEvent(id);
    if (event == nullptr) {
        return;
    }
    event->isEnabled = enabled;
    save();
    if (id == event_ids::kTrashEmpty || id == event_ids::kTrashAdd) {
        deps_.fileManagerSounds.setFinderTrashSoundEnabled(!isAnyTrashEventEnabled());
    }
}

void SoundManager::setTheme(SoundTheme theme) {
    writeBackPaths();
    activeCustomThemeID.reset();
    currentTheme = theme;
    if (theme != SoundTheme::system) {
        clearPaths();
    }
    save();
    announceThemeChange(theme);
}

// By value, because `writeBackPaths()` may change the element of `customThemes` that the
// caller passes.
void SoundManager::setCustomTheme(CustomTheme theme) {
    writeBackPaths();
    applySounds(theme);
    activeCustomThemeID = std::move(theme.id);
    currentTheme = SoundTheme::system;
    save();
    announceThemeChange({});
}

CustomTheme SoundManager::createCustomTheme(std::string name) {
    writeBackPaths();
    CustomTheme theme{.id = deps_.makeThemeId(), .name = std::move(name), .sounds = {}};
    customThemes.push_back(theme);
    activeCustomThemeID = theme.id;
    currentTheme = SoundTheme::system;
    clearPaths();
    save();
    announceThemeChange({});
    return theme;
}

void SoundManager::renameCustomTheme(std::string_view id, std::string name) {
    if (CustomTheme* const theme = findCustomTheme(id)) {
        theme->name = std::move(name);
        save();
    }
}

void SoundManager::deleteCustomTheme(std::string_view id) {
    // A copy, because the caller may pass `activeCustomThemeID` or the `id` of the element to
    // be removed.
    const std::string gone(id);
    if (activeCustomThemeID == gone) {
        activeCustomThemeID.reset();
        currentTheme = SoundTheme::classic;
        clearPaths();
    }
    std::erase_if(customThemes, [&gone](const CustomTheme& theme) { return theme.id == gone; });
    save();
    announceThemeChange({});
}

void SoundManager::writeBackPaths() {
    CustomTheme* const theme = selectedCustomTheme();
    if (theme == nullptr) {
        return;
    }
    auto sounds = theme->sounds.entries();
    for (const SoundEvent& event : events) {
        sounds.insert_or_assign(event.id, event.soundPath.value_or(""));
    }
    theme->sounds = ThemeSounds(std::move(sounds));
}

void SoundManager::applySounds(const CustomTheme& theme) {
    for (SoundEvent& event : events) {
        event.soundPath = theme.soundFor(event.id);
    }
}

void SoundManager::clearPaths() {
    for (SoundEvent& event : events) {
        event.soundPath.reset();
    }
}

void SoundManager::announceThemeChange(std::any object) {
    deps_.queue.post([&notifications = deps_.notifications, object = std::move(object)] {
        notifications.post({.name = themeDidChange, .object = object});
    });
}

}  // namespace chimewerk
