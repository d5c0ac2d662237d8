#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "synth/wav_file.h"

namespace chimewerk::sounds {

/// One built file, as the program looks it up.
struct SoundFile {
    /// A theme's raw value, "keys" for the key sounds of no theme, or "alerts".
    std::string group;
    /// An event identifier, a key sound's name or an alert's name.
    std::string name;
    /// Relative to the sounds' folder.
    std::string path;

    bool isKey() const { return name.starts_with("key_"); }
};

/// Every file that the catalogue of events and themes asks for, group by group.
std::vector<SoundFile> everySoundFile();

/// The samples of a built file. Throws std::runtime_error when it is missing or damaged.
Samples samplesOf(const SoundFile& file);

/// Where the build put the files.
std::filesystem::path soundsFolder();

/// Names of events that are each other's opposite: the first rises, the second falls.
struct Opposites {
    std::string rising;
    std::string falling;
};
const std::vector<Opposites>& opposites();

}  // namespace chimewerk::sounds
