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

/// The sound library: the settings of every event, the choice of theme, and the playing of an
/// event's sound. The program makes one and hands it on by reference. Main thread only. No
/// operation reports an error: an unknown identifier is a no-op, and a sound that cannot be had
/// gives way to the next one in line.
class SoundManager {
public:
    /// What the library needs of its dependencies; all of it outlives the library.
    struct Dependencies {
        MainQueue& queue;
        NotificationCenter& notifications;
        SoundService& sounds;
        const FileSystem& files;
        DefaultsStore& defaults;
        FileManagerSounds& fileManagerSounds;
        /// The id of each new custom theme.
        std::function<std::string()> makeThemeId = randomUuid;
    };

    /// Starts with the stored settings, and with the factory's where nothing usable is stored.
    /// Stores nothing: the store stays as it is until the first change. `resourceFolder` is an
    /// absolute path without a slash at its end, or empty when the program has no such folder.
    SoundManager(std::string resourceFolder, const Dependencies& dependencies);

    /// The events in their fixed order. They may be changed in place, but not added, removed
    /// or reordered.
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

    /// Plays the event if it exists and is enabled: counts it, plays its sound and then, after the
    /// caller has returned to the main queue, posts `eventCounterUpdated`.
    void play(std::string_view id);

    /// Plays the sound of the event that is passed, whatever its switch says, and counts nothing.
    void playEvent(const SoundEvent& event);

    /// Plays "key_press" if it is enabled, with the sound of the key that has this virtual
    /// key code.
    void playKey(std::int64_t keyCode);

    /// Plays the theme's knock sound at a volume of 0.6, whatever the knock event's settings are;
    /// nothing for `system` and for a theme that has no such sound.
    void previewTheme(SoundTheme theme);

    // Each of these changes the settings and stores them; those that select or delete a theme then
    // post `themeDidChange`, after the caller has returned to the main queue. While a custom theme
    // is selected, the events' paths are its working copy: they are written back into it when
    // another theme is selected.

    /// Sets the event's file, which is then the selected custom theme's too; none removes it.
    void setPath(std::optional<std::string> path, std::string_view id);
    /// Sets the event's volume as it is given, 0.0 to 1.0.
    void setVolume(float volume, std::string_view id);
    /// Switches the event on or off. The file manager's own trash sounds are silent while either
    /// trash event is on.
    void setEnabled(bool enabled, std::string_view id);
    /// Sets the event's threshold as it is given: degrees or percent.
    void setThreshold(float value, std::string_view id);

    /// Selects a built-in theme. All events lose their files, but for `system`, under which they
    /// keep them.
    void setTheme(SoundTheme theme);
    /// Selects this custom theme and gives the events its files. It need not be one of
    /// `customThemes`, but is then forgotten at the next start.
    void setCustomTheme(CustomTheme theme);
    /// Makes a custom theme without files, under this very name, and selects it.
    CustomTheme createCustomTheme(std::string name);
    void renameCustomTheme(std::string_view id, std::string name);
    /// Removes every custom theme with this id. If it is the selected one, `classic` is selected
    /// and all events lose their files. The files themselves stay.
    void deleteCustomTheme(std::string_view id);

    /// Holds the writing of changes back while the result lives: for a setting that the user drags.
    /// It is written at the end, or earlier when the drag takes long. The result may outlive the
    /// library; it is null where the store writes nothing later.
    [[nodiscard]] std::shared_ptr<const void> holdWrites() { return deps_.defaults.holdWrites(); }

    /// Whether either of the two trash events is switched on.
    bool isAnyTrashEventEnabled() const;

    /// The sounds that were started and are not yet released.
    const std::vector<std::shared_ptr<Sound>>& playing() const { return playing_; }

private:
    void countAndAnnounce(SoundEvent& event);
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
    Dependencies deps_;
    /// The custom themes as the store has them from us; none before the first time.
    std::optional<std::vector<CustomTheme>> savedThemes_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
