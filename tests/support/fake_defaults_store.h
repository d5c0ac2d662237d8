// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/defaults_store.h"

namespace chimewerk {

/// Settings in memory. For a restart of the program, create a new sound library with the
/// same store.
class FakeDefaultsStore final : public DefaultsStore {
public:
    DefaultsDictionary values;
    /// Number of values set or removed.
    int changes = 0;
    /// Number of damaged values reported.
    int damages = 0;

    void setObject(std::string_view key, std::optional<DefaultsValue> value) override {
        ++changes;
        if (value) {
            values.insert_or_assign(std::string(key), std::move(*value));
        } else {
            values.erase(std::string(key));
        }
    }
    void setData(std::string_view key, MakeData make) override {
        setObject(key, DefaultsValue{make()});
    }
    std::optional<DefaultsValue> object(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void keepDamaged() override { ++damages; }
};

}  // namespace chimewerk
