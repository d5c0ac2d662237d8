#include "sound/custom_theme.h"

#include <nlohmann/json.hpp>

namespace chimewerk {

// Found by the JSON library through argument-dependent look-up.
static void to_json(nlohmann::json& json, const CustomTheme& theme) {
    json = {{"id", theme.id}, {"name", theme.name}, {"sounds", theme.sounds}};
}

static void from_json(const nlohmann::json& json, CustomTheme& theme) {
    json.at("id").get_to(theme.id);
    json.at("name").get_to(theme.name);
    const auto& sounds = json.at("sounds").get_ref<const nlohmann::json::object_t&>();
    theme.sounds = {};
    for (const auto& [eventId, path] : sounds) {
        theme.sounds.emplace(eventId, path.get<std::string>());
    }
}

std::optional<std::string> CustomTheme::soundFor(const std::string& eventId) const {
    const auto entry = sounds.find(eventId);
    if (entry == sounds.end() || entry->second.empty()) {
        return std::nullopt;
    }
    return entry->second;
}

std::optional<std::string> encodeCustomThemes(const std::vector<CustomTheme>& themes) {
    try {
        // Through an array by name: an empty list is an empty array, not null.
        nlohmann::json json = nlohmann::json::array();
        for (const CustomTheme& theme : themes) {
            json.push_back(theme);
        }
        return json.dump();
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view json) {
    try {
        const auto parsed = nlohmann::json::parse(json);
        std::vector<CustomTheme> themes;
        for (const auto& element : parsed.get_ref<const nlohmann::json::array_t&>()) {
            themes.push_back(element.get<CustomTheme>());
        }
        return themes;
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

}  // namespace chimewerk
