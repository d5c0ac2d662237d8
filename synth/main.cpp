// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>

#include "synth/blocks/mastering.h"
#include "synth/blocks/wav_writer.h"
#include "synth/themes/recipe.h"

namespace {

using namespace chimewerk;

void write(const std::filesystem::path& folder, const std::string& prefix,
           std::span<const themes::Recipe> recipes) {
    for (const themes::Recipe& recipe : recipes) {
        const auto role = recipe.name.starts_with("key_") ? synth::Role::key : synth::Role::event;
        const std::string file = prefix + std::string(recipe.name) + ".wav";
        synth::writeWav(folder / file, synth::mastered(recipe.make(), role));
    }
}

void writeEverything(const std::filesystem::path& folder) {
    if (!std::filesystem::is_directory(folder)) {
        throw std::runtime_error("there is no folder " + folder.string());
    }
    write(folder, "t_8bit_", themes::eightBit());
    write(folder, "t_soft_", themes::soft());
    write(folder, "t_scifi_", themes::sciFi());
    write(folder, "t_classic_", themes::classic());
    write(folder, "t_trad_", themes::traditional());
    write(folder, "t_piano_", themes::piano());
    write(folder, "", themes::defaultKeys());
    std::filesystem::create_directory(folder / "alerts");
    write(folder / "alerts", "", themes::alerts());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: chimewerk-synth FOLDER\nWrites every sound of the program into an "
                     "existing folder.\n";
        return 2;
    }
    try {
        writeEverything(argv[1]);
    } catch (const std::exception& failure) {
        std::cerr << "chimewerk-synth: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}
