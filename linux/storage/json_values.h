#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "platform/defaults_store.h"

namespace chimewerk {

/// How settings look in JSON. Any thread.
///
/// Booleans and dictionaries are what they are in JSON, and so are texts, as `textFromBytes` has them. A
/// number is written as the shortest decimal that is the same 32-bit float, infinity as a number too large
/// for one, and what is not a number as null. A byte string is an object with the one name "$data"; a
/// dictionary's own names get one more
/// "$" when they begin with one.
nlohmann::json jsonFromValue(const DefaultsValue& value);

/// The inverse. JSON that stands for no value, such as an array, is a value of no use.
DefaultsValue valueFromJson(const nlohmann::json& json);

/// The top level of a settings file: one value by name, each not looked at further. None when the text is not
/// JSON, is no object, has a whole number of more than 64 bits, or is nested so deeply that it can be no
/// settings.
std::optional<nlohmann::json> parseSettings(std::string_view text);

}  // namespace chimewerk
