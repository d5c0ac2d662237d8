// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace chimewerk {

/// Returns the value at the start of `bytes`, in native layout and at any alignment, or none if
/// there are too few bytes.
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
