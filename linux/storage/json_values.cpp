#include "linux/storage/json_values.h"

#include <simdjson.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

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
    // For a few floats the shortest decimal, read as a double and then rounded, is their neighbour.
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

nlohmann::json jsonFromParsed(simdjson::dom::element element);

nlohmann::json jsonFromParsed(const simdjson::dom::object& object) {
    auto json = nlohmann::json::object();
    for (const auto& [name, value] : object) {
        json[std::string(name)] = jsonFromParsed(value);
    }
    return json;
}

nlohmann::json jsonFromParsed(const simdjson::dom::array& array) {
    auto json = nlohmann::json::array();
    for (const simdjson::dom::element value : array) {
        json.push_back(jsonFromParsed(value));
    }
    return json;
}

nlohmann::json jsonFromParsed(simdjson::dom::element element) {
    using simdjson::dom::element_type;
    switch (element.type()) {
        case element_type::OBJECT:
            return jsonFromParsed(simdjson::dom::object(element));
        case element_type::ARRAY:
            return jsonFromParsed(simdjson::dom::array(element));
        case element_type::STRING:
            return std::string_view(element);
        case element_type::BOOL:
            return bool(element);
        case element_type::INT64:
            return std::int64_t(element);
        case element_type::UINT64:
            return std::uint64_t(element);
        case element_type::DOUBLE:
            return double(element);
        case element_type::NULL_VALUE:
            break;
    }
    return nullptr;
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

// By the faster of the two libraries: the program cannot start before all is read.
std::optional<nlohmann::json> parseSettings(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    // What is read will be written, value within value, and the stack has an end.
    constexpr std::size_t kDeepest = 64;
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (parser.allocate(text.size() + simdjson::SIMDJSON_PADDING, kDeepest) != simdjson::SUCCESS ||
        parser.parse(text.data(), text.size()).get(object) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return jsonFromParsed(object);
}

}  // namespace chimewerk
