#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/notification_center.h"
#include "platform/sound_service.h"
#include "sound/custom_theme.h"
#include "sound/sound_event.h"
#include "sound/sound_theme.h"

namespace chimewerk {

/// The sound library: the settings of every event, the choice of theme, and the playing of an event's sound. The
/// program makes one and hands it on by reference. Main thread only. No operation reports an error: an unknown
/// identifier is a no-op, and a sound that cannot be had gives way to the next one in line.
class SoundManager {
public:
    /// What the library needs of its surroundings; all of it outlives the library.
    struct Surroundings {
        MainQueue& queue;
        NotificationCenter& notifications;
        SoundService& sounds;
        const FileSystem& files;
    };

    /// Starts with factory settings. `resourceFolder` is an absolute path without a
    /// slash at its end, or empty when the program has no such folder.
    SoundManager(std::string resourceFolder, const Surroundings& surroundings);

    /// The events in their fixed order. They may be changed in place, but not added, removed or reordered.
    std::vector<SoundEvent> events;
    /// `system` while a custom theme is selected.
    SoundTheme currentTheme = SoundTheme::classic;
    /// In the order of their creation.
    std::vector<CustomTheme> customThemes;
    /// The `id` of the selected custom theme.
    std::optional<std::string> activeCustomThemeID;

    /// Whether a custom theme is selected.
    bool isCustomThemeActive() const { return activeCustomThemeID.has_value(); }
    /// The selected custom theme; null when none is selected or none has the selected id.
    const CustomTheme* activeCustomTheme() const;

    /// The event with this identifier, null when there is none.
    SoundEvent* findEvent(std::string_view id);
    const SoundEvent* findEvent(std::string_view id) const;
    /// Whether the event exists and is switched on.
    bool isEventEnabled(std::string_view id) const;

    /// Plays the event if it exists and is enabled: counts it, plays its sound and then, after the caller has
    /// returned to the main queue, posts `eventCounterUpdated`.
    void play(std::string_view id);

    /// Plays the sound of the event that is passed, whatever its switch says, and counts nothing.
    void playEvent(const SoundEvent& event);

    /// Plays "key_press" if it is enabled, with the sound of the key that has this virtual key code.
    void playKey(std::int64_t keyCode);

    /// Plays the theme's knock sound at a volume of 0.6, whatever the knock event's settings are; nothing for
    /// `system` and for a theme that has no such sound.
    void previewTheme(SoundTheme theme);

    /// The sounds that were started and are not yet released.
    const std::vector<std::shared_ptr<Sound>>& playing() const { return playing_; }

private:
    void countAndAnnounce(SoundEvent& event);
    bool playFile(const std::string& path, float volume);
    bool playOwnFile(const SoundEvent& event);
    void playFromLibrary(const std::string& soundName, const SoundEvent& event);
    void fire(const std::shared_ptr<Sound>& sound, float volume);
    std::string themeFile(SoundTheme theme, const std::string& soundName) const;

    const std::string res_;
    std::vector<std::shared_ptr<Sound>> playing_;
    Surroundings around_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
