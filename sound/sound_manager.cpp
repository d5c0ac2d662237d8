// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sound/sound_manager.h"

#include <algorithm>
#include <ranges>
#include <utility>

#include "sound/sound_event.h"

namespace chimewerk {

namespace {

/// Returns the first element with this `id`, or null.
template <typename List>
auto* findById(List& list, std::string_view id) {
    const auto found = std::ranges::find(list, id, &std::ranges::range_value_t<List>::id);
    return found == list.end() ? nullptr : &*found;
}

}  // namespace

SoundManager::SoundManager(std::string resourceFolder, Dependencies dependencies)
    : events(factoryEvents()), res_(std::move(resourceFolder)), deps_(std::move(dependencies)) {
    load();
}

const CustomTheme* SoundManager::activeCustomTheme() const {
    return activeCustomThemeID ? findById(customThemes, *activeCustomThemeID) : nullptr;
}

CustomTheme* SoundManager::selectedCustomTheme() {
    return activeCustomThemeID ? findCustomTheme(*activeCustomThemeID) : nullptr;
}

CustomTheme* SoundManager::findCustomTheme(std::string_view id) {
    return findById(customThemes, id);
}

const SoundEvent* SoundManager::findEvent(std::string_view id) const {
    return findById(events, id);
}

SoundEvent* SoundManager::findEvent(std::string_view id) {
    return findById(events, id);
}

bool SoundManager::isEventEnabled(std::string_view id) const {
    const SoundEvent* const event = findEvent(id);
    return event != nullptr && event->isEnabled;
}

bool SoundManager::isAnyTrashEventEnabled() const {
    return isEventEnabled(event_ids::kTrashEmpty) || isEventEnabled(event_ids::kTrashAdd);
}

}  // namespace chimewerk
