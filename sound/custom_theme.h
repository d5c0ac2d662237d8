#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace chimewerk {

/// A theme's files: event identifier to absolute file path. A missing entry and an empty one both
/// mean that there is no file. It never changes, and its copies share one map, so a list of a
/// thousand themes can be compared and handed to another thread at the price of their names.
class ThemeSounds {
public:
    using Map = std::map<std::string, std::string, std::less<>>;

    ThemeSounds() : ThemeSounds(Map{}) {}
    ThemeSounds(std::initializer_list<Map::value_type> entries) : ThemeSounds(Map(entries)) {}
    explicit ThemeSounds(Map entries) : entries_(std::make_shared<const Map>(std::move(entries))) {}

    const Map& entries() const { return *entries_; }

    bool operator==(const ThemeSounds& other) const {
        return entries_ == other.entries_ || *entries_ == *other.entries_;
    }

private:
    std::shared_ptr<const Map> entries_;
};

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

/// Encodes themes as compact JSON. Texts that are not valid UTF-8, such as some file paths, are
/// encoded by `textFromBytes`.
std::string encodeCustomThemes(const std::vector<CustomTheme>& themes);

/// Decodes themes from JSON: an array of objects, each with the texts "id" and "name" and with
/// "sounds", an object of texts. None when a single element is different.
std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view text);

}  // namespace chimewerk
