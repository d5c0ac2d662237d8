#include "sound/sound_manager.h"

#include <algorithm>
#include <utility>

#include "sound/sound_event.h"

namespace chimewerk {

SoundManager::SoundManager(std::string resourceFolder, const Dependencies& dependencies)
    : events(factoryEvents()), res_(std::move(resourceFolder)), deps_(dependencies) {
    load();
}

const CustomTheme* SoundManager::activeCustomTheme() const {
    return const_cast<SoundManager*>(this)->selectedCustomTheme();
}

CustomTheme* SoundManager::selectedCustomTheme() {
    return activeCustomThemeID ? findCustomTheme(*activeCustomThemeID) : nullptr;
}

CustomTheme* SoundManager::findCustomTheme(std::string_view id) {
    const auto found = std::find_if(customThemes.begin(), customThemes.end(),
                                    [id](const CustomTheme& theme) { return theme.id == id; });
    return found == customThemes.end() ? nullptr : &*found;
}

const SoundEvent* SoundManager::findEvent(std::string_view id) const {
    const auto found = std::find_if(events.begin(), events.end(),
                                    [id](const SoundEvent& event) { return event.id == id; });
    return found == events.end() ? nullptr : &*found;
}

SoundEvent* SoundManager::findEvent(std::string_view id) {
    return const_cast<SoundEvent*>(std::as_const(*this).findEvent(id));
}

bool SoundManager::isEventEnabled(std::string_view id) const {
    const SoundEvent* const event = findEvent(id);
    return event != nullptr && event->isEnabled;
}

bool SoundManager::isAnyTrashEventEnabled() const {
    return isEventEnabled(event_ids::kTrashEmpty) || isEventEnabled(event_ids::kTrashAdd);
}

}  // namespace chimewerk
