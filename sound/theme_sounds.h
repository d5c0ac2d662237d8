#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace chimewerk {

/// A theme's files: event identifier to absolute file path. A missing entry and an empty one both mean that
/// there is no file. It never changes, and its copies share one map, so a list of a thousand themes can be
/// compared and handed to another thread at the price of their names.
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

}  // namespace chimewerk
