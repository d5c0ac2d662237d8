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

/// A value that the store can hold; `std::monostate` stands for any other type. Booleans, strings
/// and byte strings are read back exactly, whatever their bytes. A number is read back as the same
/// 32-bit float; NaN may be read back as no value.
struct DefaultsValue {
    std::variant<std::monostate, bool, double, std::string, DefaultsData, DefaultsDictionary> value;
    bool operator==(const DefaultsValue&) const = default;
};

/// The user's persistent settings by key. Main thread only. Reports no errors: what cannot be read
/// is absent, and what cannot be written now is written later.
class DefaultsStore {
public:
    using MakeData = std::function<DefaultsData()>;

    virtual ~DefaultsStore() = default;

    /// Replaces the value of `key`; no value removes the key. Returns without waiting for a disk.
    virtual void setObject(std::string_view key, std::optional<DefaultsValue> value) = 0;

    /// Replaces the value of `key` by a byte string that takes long to make. `make` is called once,
    /// later, on any thread, so it must own all that it reads. It must not throw.
    virtual void setData(std::string_view key, MakeData make) = 0;

    /// Returns the value of `key`; none if there is none.
    virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;

    /// Delays writing while the returned object lives, for a setting that the user drags. The
    /// changes are written at the end, or earlier during a long drag. The object may outlive the
    /// store; it is null if the store does not delay writing.
    [[nodiscard]] virtual std::shared_ptr<const void> holdWrites() { return nullptr; }

    /// Call this when stored values are unusable and the program goes on without them. Before the
    /// next change is written, the store copies all that is stored now to a file beside it, so that
    /// the user can repair it.
    virtual void keepDamaged() = 0;
};

}  // namespace chimewerk
