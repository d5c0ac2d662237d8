// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "platform/defaults_store.h"

namespace chimewerk {

/// Converts a setting to JSON. Any thread.
///
/// Booleans and dictionaries stay what they are; texts are encoded by `textFromBytes`. A number
/// becomes the shortest decimal that gives the same 32-bit float, infinity a number too large for a
/// float, NaN null. A byte string becomes an object with the single name "$data"; a dictionary's
/// own name that begins with "$" gets another "$" in front.
nlohmann::json jsonFromValue(const DefaultsValue& value);

/// The inverse of `jsonFromValue()`. JSON that is no setting, such as an array, becomes an
/// empty value.
DefaultsValue valueFromJson(const nlohmann::json& json);

/// Parses a settings file: an object with one value per key. None if the text is not JSON, is no
/// object, or is nested deeper than 64 levels.
std::optional<nlohmann::json> parseSettings(std::string_view text);

}  // namespace chimewerk
