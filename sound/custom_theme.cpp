#include "sound/custom_theme.h"

#include <simdjson.h>

#include <nlohmann/json.hpp>

#include "platform/byte_text.h"

namespace chimewerk {

namespace {

std::string text(const simdjson::dom::element& element) {
    return bytesFromText(std::string(std::string_view(element)));
}

CustomTheme decoded(const simdjson::dom::element& element) {
    ThemeSounds::Map sounds;
    const simdjson::dom::object entries = element["sounds"];
    for (const auto& [eventId, path] : entries) {
        sounds.insert_or_assign(bytesFromText(std::string(eventId)), text(path));
    }
    return {.id = text(element["id"]),
            .name = text(element["name"]),
            .sounds = ThemeSounds(std::move(sounds))};
}

}  // namespace

std::optional<std::string> CustomTheme::soundFor(std::string_view eventId) const {
    const auto entry = sounds.entries().find(eventId);
    if (entry == sounds.entries().end() || entry->second.empty()) {
        return std::nullopt;
    }
    return entry->second;
}

std::string encodeCustomThemes(const std::vector<CustomTheme>& themes) {
    // Through an array by name: an empty list is an empty array, not null.
    nlohmann::json json = nlohmann::json::array();
    for (const CustomTheme& theme : themes) {
        nlohmann::json sounds = nlohmann::json::object();
        for (const auto& [eventId, path] : theme.sounds.entries()) {
            sounds.emplace(textFromBytes(eventId), textFromBytes(path));
        }
        json.push_back({{"id", textFromBytes(theme.id)},
                        {"name", textFromBytes(theme.name)},
                        {"sounds", std::move(sounds)}});
    }
    return json.dump();
}

// By the faster of the two libraries: the program cannot start before a thousand themes are read.
std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view json) {
    try {
        simdjson::dom::parser parser;
        std::vector<CustomTheme> themes;
        const simdjson::dom::array list = parser.parse(json.data(), json.size());
        for (const auto element : list) {
            themes.push_back(decoded(element));
        }
        return themes;
    } catch (const simdjson::simdjson_error&) {
        return std::nullopt;
    }
}

}  // namespace chimewerk
