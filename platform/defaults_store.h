// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace chimewerk {

struct DefaultsValue;

/// A byte string, kept apart from text.
struct DefaultsData {
    std::string bytes;
    bool operator==(const DefaultsData&) const = default;
};
using DefaultsDictionary = std::map<std::string, DefaultsValue, std::less<>>;

/// What the store can hold; `std::monostate` stands for anything else. Booleans come back as
/// booleans, strings and byte strings byte for byte whatever the bytes are. A number comes
/// back as one that is the same 32-bit float, bit for bit; one that is not a number may come
/// back as nothing.
struct DefaultsValue {
    std::variant<std::monostate, bool, double, std::string, DefaultsData, DefaultsDictionary> value;
    bool operator==(const DefaultsValue&) const = default;
};

/// The user's persistent settings by key. Main thread only. Nothing fails visibly: what cannot be
/// read is absent, and what cannot be written now is written when it can be.
class DefaultsStore {
public:
    using MakeData = std::function<DefaultsData()>;

    virtual ~DefaultsStore() = default;

    /// Replaces what is stored under `key`; none removes the key. Returns without waiting for
    /// a disk.
    virtual void setObject(std::string_view key, std::optional<DefaultsValue> value) = 0;

    /// Replaces what is stored under `key` by a byte string that takes long to make. `make` is
    /// called once, later, on any thread, so it owns all that it reads; it does not throw.
    virtual void setData(std::string_view key, MakeData make) = 0;

    /// What is stored under `key`, none when there is nothing.
    virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;

    /// Holds the writing of changes back while the result lives: for what the user drags, which is
    /// written at the end, or earlier when the drag takes long. The result may outlive the store;
    /// null where the store writes nothing later.
    [[nodiscard]] virtual std::shared_ptr<const void> holdWrites() { return nullptr; }

    /// Call this when what is stored cannot be used and the program goes on without it. When the
    /// next change is written, a copy of all that is stored now is kept beside it for the user
    /// to repair.
    virtual void keepDamaged() = 0;
};

}  // namespace chimewerk
