#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/defaults_store.h"
#include "sound/sound_theme.h"

namespace chimewerk {

/// One thing that happens to the settings: the user changes something, the program ends and starts again, or
/// somebody spoils what is stored while it does not run.
struct SettingsStep {
    enum class Kind {
        setPath,
        setVolume,
        setEnabled,
        setThreshold,
        setTheme,
        setCustomTheme,
        createCustomTheme,
        renameCustomTheme,
        deleteCustomTheme,
        restart,
        loseEvents,
        spoilEvents,
        spoilSwitch,
        numberSwitch,
        loseVolume,
        spoilThemes,
        spoilTheme,
        spoilSelection,
        last = spoilSelection,
    };

    Kind kind;
    /// Of an event, or of a custom theme.
    std::string id;
    std::string text;
    float number;
    SoundTheme theme;
};
using SettingsSession = std::vector<SettingsStep>;

std::string describe(const SettingsSession& session);

/// A random session, the same for the same seed.
SettingsSession randomSettingsSession(unsigned seed, std::size_t length);

/// Opens what has been stored so far, as the start of the program does.
using OpenStore = std::function<std::unique_ptr<DefaultsStore>()>;
/// Makes storage that is empty.
using MakeStorage = std::function<OpenStore()>;

/// Plays the session to a sound library and to a small model of the rules; tells where they first differ,
/// none when they never do.
std::optional<std::string> firstDifference(const SettingsSession& session,
                                           const MakeStorage& makeStorage);

/// Plays the sessions of these seeds; tells the seed, the difference and the session, shortened to the steps
/// it takes. Empty when the library always does as the model.
std::string firstFailingSession(unsigned firstSeed, unsigned count, std::size_t length,
                                const MakeStorage& makeStorage);

}  // namespace chimewerk
