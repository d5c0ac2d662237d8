#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace chimewerk {

/// The value that lies at the beginning of `bytes`, in the machine's own layout and at any alignment; none
/// when they are too few.
template <typename Value>
std::optional<Value> readValue(std::span<const std::byte> bytes) {
    static_assert(std::is_trivially_copyable_v<Value>);
    if (bytes.size() < sizeof(Value)) {
        return std::nullopt;
    }
    Value value{};
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

}  // namespace chimewerk
