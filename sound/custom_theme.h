#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sound/theme_sounds.h"

namespace chimewerk {

/// A theme that the user has made and named.
struct CustomTheme {
    /// A random UUID in canonical upper-case text; never changes.
    std::string id;
    std::string name;
    ThemeSounds sounds;

    bool operator==(const CustomTheme&) const = default;

    /// The file for this event, none when the theme has none.
    std::optional<std::string> soundFor(std::string_view eventId) const;
};

/// Compact JSON text of a list of themes. Texts that are not valid UTF-8 (a file path may be any bytes) are
/// written as `textFromBytes` has it.
std::string encodeCustomThemes(const std::vector<CustomTheme>& themes);

/// The themes in a JSON text; none when it is not an array of objects that each have the text "id", the text
/// "name" and "sounds", an object of texts. One bad element makes the whole list none.
std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view json);

}  // namespace chimewerk
