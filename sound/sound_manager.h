// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/defaults_store.h"
#include "platform/file_manager_sounds.h"
#include "platform/file_system.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/notification_center.h"
#include "platform/sound_service.h"
#include "sound/custom_theme.h"
#include "sound/sound_event.h"
#include "sound/sound_theme.h"
#include "sound/uuid.h"

namespace chimewerk {

/// The sound library: holds the settings of every event and the selected theme, and plays the
/// events' sounds. The program creates one and passes it by reference. Main thread only. No
/// operation reports an error: an unknown identifier has no effect, and if a sound cannot be played
/// the next one in line is tried.
class SoundManager {
public:
    /// The dependencies of the library; all of them must outlive it.
    struct Dependencies {
        MainQueue& queue;
        NotificationCenter& notifications;
        SoundService& sounds;
        const FileSystem& files;
        DefaultsStore& defaults;
        FileManagerSounds& fileManagerSounds;
        /// Returns the id for a new custom theme.
        std::function<std::string()> makeThemeId = randomUuid;
    };

    /// Loads the stored settings, and the defaults where nothing usable is stored. Writes nothing
    /// to the store until the first change. `resourceFolder` is an absolute path without a trailing
    /// slash, or empty if the program has no such folder.
    SoundManager(std::string resourceFolder, Dependencies dependencies);

    /// The events in their fixed order. They may be changed in place, but not added, removed
    /// or reordered.
    std::vector<SoundEvent> events;
    /// `system` while a custom theme is selected.
    SoundTheme currentTheme = SoundTheme::classic;
    /// In the order of their creation.
    std::vector<CustomTheme> customThemes;
    /// The `id` of the selected custom theme.
    std::optional<std::string> activeCustomThemeID;

    /// Returns whether a custom theme is selected.
    bool isCustomThemeActive() const { return activeCustomThemeID.has_value(); }
    /// Returns the selected custom theme, or null if none is selected or none has the selected id.
    const CustomTheme* activeCustomTheme() const;

    /// Returns the event with this identifier, or null if there is none.
    SoundEvent* findEvent(std::string_view id);
    const SoundEvent* findEvent(std::string_view id) const;
    /// Returns whether the event exists and is enabled.
    bool isEventEnabled(std::string_view id) const;

    /// Plays the event if it exists and is enabled: counts it, plays its sound and then, after the
    /// caller has returned to the main queue, posts `eventCounterUpdated`.
    void play(std::string_view id);

    /// Plays the sound of `event`, even if it is disabled, and does not count it.
    void playEvent(const SoundEvent& event);

    /// Plays "key_press" if it is enabled, with the sound of the key that has this virtual
    /// key code.
    void playKey(std::int64_t keyCode);

    /// Plays the theme's knock sound at volume 0.6, whatever the settings of the knock event. Plays
    /// nothing for `system` and for a theme without this sound.
    void previewTheme(SoundTheme theme);

    /// While muted, no sound starts; events are counted and announced as ever. Never stored: each
    /// run begins unmuted. Sounds that have started play to their end. A change posts
    /// `kMuteDidChange`.
    void setMuted(bool muted);
    bool isMuted() const { return isMuted_; }

    // Each of these changes the settings and stores them. Those that select or delete a theme also
    // post `themeDidChange`, after the caller has returned to the main queue. While a custom theme
    // is selected, the events' paths are its working copy: they are written back to the theme when
    // another theme is selected.

    /// Sets the event's file, also in the selected custom theme; none removes it.
    void setPath(std::optional<std::string> path, std::string_view id);
    /// Sets the event's volume, 0.0 to 1.0. The value is not checked.
    void setVolume(float volume, std::string_view id);
    /// Switches the event on or off. The file manager's own trash sounds are off while either trash
    /// event is on.
    void setEnabled(bool enabled, std::string_view id);
    /// Sets the event's threshold, in degrees or percent. The value is not checked.
    void setThreshold(float value, std::string_view id);

    /// Selects a built-in theme. Removes the files of all events, except for `system`, which
    /// keeps them.
    void setTheme(SoundTheme theme);
    /// Selects this custom theme and gives the events its files. A theme that is not in
    /// `customThemes` is forgotten at the next start.
    void setCustomTheme(CustomTheme theme);
    /// Creates and selects a custom theme with this name and without files.
    CustomTheme createCustomTheme(std::string name);
    void renameCustomTheme(std::string_view id, std::string name);
    /// Removes every custom theme with this id. If it is selected, `classic` is selected instead
    /// and all events lose their files. Deletes no files.
    void deleteCustomTheme(std::string_view id);

    /// Delays writing while the returned object lives, for a setting that the user drags. The
    /// changes are written at the end, or earlier during a long drag. The object may outlive the
    /// library; it is null if the store does not delay writing.
    [[nodiscard]] std::shared_ptr<const void> holdWrites() { return deps_.defaults.holdWrites(); }

    /// Returns whether either trash event is enabled.
    bool isAnyTrashEventEnabled() const;

    /// Returns the sounds that were started and not yet released.
    const std::vector<std::shared_ptr<Sound>>& playing() const { return playing_; }

private:
    void countAndAnnounce(SoundEvent& event);
    void playSound(std::string_view soundName, const SoundEvent& event);
    bool playFile(const std::string& path, float volume);
    bool playOwnFile(const SoundEvent& event);
    void playFromLibrary(std::string_view soundName, const SoundEvent& event);
    void fire(const std::shared_ptr<Sound>& sound, float volume);

    void announceThemeChange(std::any object);
    CustomTheme* findCustomTheme(std::string_view id);
    CustomTheme* selectedCustomTheme();
    void writeBackPaths();
    void applySounds(const CustomTheme& theme);
    void clearPaths();

    void save();
    void load();
    void loadCustomThemes();
    void loadEvents();

    const std::string res_;
    std::vector<std::shared_ptr<Sound>> playing_;
    bool isMuted_ = false;
    Dependencies deps_;
    /// The custom themes as last stored; none before the first time.
    std::optional<std::vector<CustomTheme>> savedThemes_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
