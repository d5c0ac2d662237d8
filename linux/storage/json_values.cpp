// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/json_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "platform/byte_text.h"

namespace chimewerk {

namespace {

constexpr const char* kDataName = "$data";

nlohmann::json jsonFromNumber(double value) {
    const auto number = static_cast<float>(value);
    if (std::isinf(number)) {
        constexpr double kTooLargeForAFloat = 1e39;
        return std::copysign(kTooLargeForAFloat, number);
    }
    std::array<char, 64> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    double shortest = 0;
    std::from_chars(digits.data(), written.ptr, shortest);
    // For a few floats, the shortest decimal, read as a double and rounded, gives a
    // neighbouring float.
    return static_cast<float>(shortest) == number ? shortest : static_cast<double>(number);
}

nlohmann::json jsonFromDictionary(const DefaultsDictionary& dictionary) {
    auto object = nlohmann::json::object();
    for (const auto& [name, value] : dictionary) {
        object.emplace(textFromBytes((name.starts_with('$') ? "$" : "") + name),
                       jsonFromValue(value));
    }
    return object;
}

DefaultsValue valueFromObject(const nlohmann::json& object) {
    if (object.size() == 1 && object.begin().key() == kDataName && object.begin()->is_string()) {
        return {DefaultsData{bytesFromText(object.begin()->get<std::string>())}};
    }
    DefaultsDictionary dictionary;
    for (const auto& [text, json] : object.items()) {
        const std::string name = bytesFromText(text);
        dictionary.insert_or_assign(name.starts_with("$$") ? name.substr(1) : name,
                                    valueFromJson(json));
    }
    return {std::move(dictionary)};
}

/// Returns whether values are nested at most `levels` deep.
bool isWithin(int levels, const nlohmann::json& json) {
    return !json.is_structured() ||
           (levels > 0 && std::ranges::all_of(json, [levels](const nlohmann::json& value) {
                return isWithin(levels - 1, value);
            }));
}

}  // namespace

nlohmann::json jsonFromValue(const DefaultsValue& value) {
    struct Conversion {
        nlohmann::json operator()(std::monostate /*none*/) const { return nullptr; }
        nlohmann::json operator()(bool flag) const { return flag; }
        nlohmann::json operator()(double number) const { return jsonFromNumber(number); }
        nlohmann::json operator()(const std::string& bytes) const { return textFromBytes(bytes); }
        nlohmann::json operator()(const DefaultsData& data) const {
            return {{kDataName, textFromBytes(data.bytes)}};
        }
        nlohmann::json operator()(const DefaultsDictionary& dictionary) const {
            return jsonFromDictionary(dictionary);
        }
    };
    return std::visit(Conversion{}, value.value);
}

DefaultsValue valueFromJson(const nlohmann::json& json) {
    if (json.is_boolean()) {
        return {json.get<bool>()};
    }
    if (json.is_number()) {
        return {json.get<double>()};
    }
    if (json.is_string()) {
        return {bytesFromText(json.get<std::string>())};
    }
    return json.is_object() ? valueFromObject(json) : DefaultsValue{};
}

std::optional<nlohmann::json> parseSettings(std::string_view text) {
    // Settings are written recursively, and the stack is limited.
    constexpr int kMaxLevels = 64;
    // The parser treats a NUL as the end of the text.
    if (text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    auto json = nlohmann::json::parse(text, nullptr, false);
    return json.is_object() && isWithin(kMaxLevels, json) ? std::optional(std::move(json))
                                                          : std::nullopt;
}

}  // namespace chimewerk
