#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace chimewerk {

struct DefaultsValue;

/// A byte string, kept apart from text.
using DefaultsData = std::vector<std::byte>;
using DefaultsDictionary = std::map<std::string, DefaultsValue, std::less<>>;

/// What the store can hold. Numbers come back with the value they were stored with, 32-bit floats bit for bit, and
/// booleans come back as booleans.
struct DefaultsValue {
    std::variant<bool, double, std::string, DefaultsData, DefaultsDictionary> value;
};

/// The user's persistent settings by key. Main thread only. Nothing fails visibly: what cannot be read is absent, and
/// what cannot be written now is written when it can be.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    /// Replaces what is stored under `key`; none removes the key. Returns without waiting for a disk.
    virtual void setObject(std::string_view key, std::optional<DefaultsValue> value) = 0;

    /// What is stored under `key`, none when there is nothing.
    virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
};

}  // namespace chimewerk
