// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Whatever a settings file holds, the program must start, and must read back unchanged what it
// then stores.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "linux/storage/json_values.h"
#include "sound/sound_event.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

void require(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "not so: " << what << '\n';
        std::abort();
    }
}

/// Returns the values of the store after reading a file with this text.
DefaultsDictionary valuesIn(std::string_view text) {
    DefaultsDictionary values;
    if (const auto json = parseSettings(text)) {
        require(parseSettings(json->dump(2)) == json,
                "a settings file is read back as it is written");
        for (const auto& [key, value] : json->items()) {
            values.insert_or_assign(key, valueFromJson(value));
        }
    }
    return values;
}

void checkInvariants(SoundLibrary& library) {
    const auto factory = factoryEvents();
    require(library->events.size() == factory.size(), "the events are the table's");
    for (std::size_t i = 0; i < factory.size(); ++i) {
        require(library->events[i].id == factory[i].id, "the events are in their order");
    }
    require(!library->isCustomThemeActive() || library->currentTheme == SoundTheme::system,
            "a custom theme is over system");
    require(!library->isCustomThemeActive() || library->activeCustomTheme() != nullptr,
            "the selected theme is there");
}

bool sameSettings(const SoundEvent& a, const SoundEvent& b) {
    const auto sameNumber = [](float x, float y) { return x == y || (x != x && y != y); };
    return a.soundPath == b.soundPath && a.isEnabled == b.isEnabled &&
           sameNumber(a.volume, b.volume) && sameNumber(a.threshold, b.threshold);
}

void checkRoundTrip(SoundLibrary& library) {
    library->renameCustomTheme("A", "renamed");
    library->setPath("/new.wav", "slap");
    for (auto& [key, value] : library.defaults.values) {
        value = valueFromJson(nlohmann::json::parse(jsonFromValue(value).dump()));
    }
    const auto events = library->events;
    const auto themes = library->customThemes;
    const auto theme = library->currentTheme;
    const auto selected = library->activeCustomThemeID;
    library.restart();
    require(std::equal(events.begin(), events.end(), library->events.begin(), sameSettings),
            "events come back");
    require(library->customThemes == themes, "custom themes come back");
    require(library->currentTheme == theme && library->activeCustomThemeID == selected,
            "the selection comes back");
}

}  // namespace
}  // namespace chimewerk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace chimewerk;
    const std::string text(data, data + size);
    static SoundLibrary library;
    for (const DefaultsDictionary& values :
         {valuesIn(text), DefaultsDictionary{{"ChimewerkCustomThemes", {DefaultsData{text}}},
                                             {"ChimewerkActiveCustomTheme", {std::string("A")}}}}) {
        library.defaults.values = values;
        library.restart();
        checkInvariants(library);
        if (library->events != factoryEvents() || !library->customThemes.empty()) {
            checkRoundTrip(library);
        }
    }
    return 0;
}
