#include "synth/sound_set.h"

#include <set>

#include "sound/sound_event.h"
#include "sound/sound_theme.h"

namespace chimewerk::sounds {
namespace {

const std::vector<std::string> kKeys = {"key_click", "key_space", "key_return"};

}  // namespace

std::vector<SoundFile> everySoundFile() {
    std::vector<SoundFile> files;
    for (const SoundTheme theme : kAllThemes) {
        if (theme == SoundTheme::system) {
            continue;
        }
        const std::string raw(rawValue(theme));
        const auto add = [&](const std::string& name) {
            std::string path = "t_";
            path.append(raw).append("_").append(name).append(".wav");
            files.push_back({raw, name, path});
        };
        for (const SoundEvent& event : factoryEvents()) {
            // A key press has its three sounds instead of one.
            if (event.id != "key_press") {
                add(event.id);
            }
        }
        for (const std::string& key : kKeys) {
            add(key);
        }
    }
    for (const std::string& key : kKeys) {
        files.push_back({"keys", key, key + ".wav"});
    }
    std::set<std::string> alerts;
    for (const SoundEvent& event : factoryEvents()) {
        if (alerts.insert(event.systemFallback).second) {
            files.push_back(
                {"alerts", event.systemFallback, "alerts/" + event.systemFallback + ".wav"});
        }
    }
    return files;
}

Samples samplesOf(const SoundFile& file) {
    return readWav(soundsFolder() / file.path);
}

std::filesystem::path soundsFolder() {
    return CHIMEWERK_SOUNDS_FOLDER;
}

const std::vector<Opposites>& opposites() {
    static const std::vector<Opposites> pairs = {{"lid_open", "lid_close"},
                                                 {"charger_connect", "charger_disconnect"},
                                                 {"brightness_up", "brightness_down"},
                                                 {"volume_up", "volume_down"},
                                                 {"network_up", "network_down"}};
    return pairs;
}

}  // namespace chimewerk::sounds
