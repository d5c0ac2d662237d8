// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

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

/// A theme's files: event identifier to absolute file path. A missing or empty entry means that
/// there is no file. Immutable, and copies share one map, so comparing a list of a thousand themes
/// or passing it to another thread is cheap.
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

/// A theme that the user has created and named.
struct CustomTheme {
    /// A random UUID in upper case; never changes.
    std::string id;
    std::string name;
    ThemeSounds sounds;

    bool operator==(const CustomTheme&) const = default;

    /// Returns the file for this event, or none if the theme has none.
    std::optional<std::string> soundFor(std::string_view eventId) const;
};

/// Encodes themes as compact JSON. Text that is not valid UTF-8, such as some file paths, is
/// encoded by `textFromBytes`.
std::string encodeCustomThemes(const std::vector<CustomTheme>& themes);

/// Decodes themes from JSON: an array of objects, each with the strings "id" and "name" and the
/// object "sounds", whose values are strings. Returns none if any element differs.
std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view text);

}  // namespace chimewerk
