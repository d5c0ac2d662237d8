#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// A theme that the user has made and named.
struct CustomTheme {
    /// A random UUID in canonical upper-case text; never changes.
    std::string id;
    std::string name;
    /// Event identifier to absolute file path. A missing entry and an empty one both mean that there is no file.
    std::map<std::string, std::string> sounds;

    bool operator==(const CustomTheme&) const = default;

    /// The file for this event, none when the theme has none.
    std::optional<std::string> soundFor(const std::string& eventId) const;
};

/// Compact JSON text of a list of themes; none when a string is not valid UTF-8.
std::optional<std::string> encodeCustomThemes(const std::vector<CustomTheme>& themes);

/// The themes in a JSON text; none when it is not an array of objects that each have the text "id", the text "name"
/// and "sounds", an object of texts. One bad element makes the whole list none.
std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view json);

}  // namespace chimewerk
