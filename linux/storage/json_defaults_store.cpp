// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/json_defaults_store.h"

#include <future>
#include <mutex>
#include <nlohmann/json.hpp>
#include <utility>

#include "linux/storage/json_values.h"
#include "platform/byte_text.h"

namespace chimewerk {

/// A value of the file, made on first use. Any thread.
class JsonDefaultsStore::Value {
public:
    explicit Value(nlohmann::json json) : json_(std::move(json)) {}
    explicit Value(MakeData make) : make_(std::move(make)) {}

    const nlohmann::json& json() const {
        std::call_once(made_, [this] {
            if (make_) {
                json_ = jsonFromValue({std::exchange(make_, nullptr)()});
            }
        });
        return json_;
    }

private:
    mutable std::once_flag made_;
    mutable MakeData make_;
    mutable nlohmann::json json_;
};

JsonDefaultsStore::JsonDefaultsStore(MainQueue& queue, const std::string& configHome)
    : queue_(queue),
      file_(configHome.empty() ? "" : configHome + "/chimewerk/settings.json"),
      schedule_(queue, [this](WriteSchedule::Done done) { beginWrite(std::move(done)); }) {
    load();
}

JsonDefaultsStore::~JsonDefaultsStore() {
    flush();
}

void JsonDefaultsStore::load() {
    const auto contents = file_.read();
    if (contents.finding == SettingsFile::Finding::absent) {
        return;
    }
    auto settings = contents.finding == SettingsFile::Finding::text ? parseSettings(contents.text)
                                                                    : std::nullopt;
    if (!settings) {
        file_.setAside();
        return;
    }
    for (auto& [key, json] : settings->get_ref<nlohmann::json::object_t&>()) {
        values_.emplace(key, std::make_shared<const Value>(std::move(json)));
    }
}

void JsonDefaultsStore::setObject(std::string_view key, std::optional<DefaultsValue> value) {
    put(key, value ? std::make_shared<const Value>(jsonFromValue(*value)) : nullptr);
}

void JsonDefaultsStore::setData(std::string_view key, MakeData make) {
    put(key, std::make_shared<const Value>(std::move(make)));
}

void JsonDefaultsStore::put(std::string_view key, std::shared_ptr<const Value> value) {
    auto name = textFromBytes(std::string(key));
    if (value) {
        values_.insert_or_assign(std::move(name), std::move(value));
    } else if (values_.erase(name) == 0) {
        return;
    }
    schedule_.changed();
}

std::optional<DefaultsValue> JsonDefaultsStore::object(std::string_view key) const {
    const auto found = values_.find(textFromBytes(std::string(key)));
    return found == values_.end() ? std::nullopt
                                  : std::optional(valueFromJson(found->second->json()));
}

void JsonDefaultsStore::keepDamaged() {
    worker_.post([this](const std::stop_token& /*stop*/) { file_.copyAsideFirst(); });
}

void JsonDefaultsStore::beginWrite(WriteSchedule::Done done) {
    worker_.post([this, values = values_, done = std::move(done)](const std::stop_token& /*stop*/) {
        const bool written = file_.replace(textOf(values));
        queue_.post([done, written] { done(written); });
    });
}

void JsonDefaultsStore::flush() {
    if (!schedule_.hasUnwritten()) {
        return;
    }
    // Queued behind a write that may be running, so the newest state is written last.
    std::promise<bool> written;
    worker_.post([this, &written](const std::stop_token& /*stop*/) {
        written.set_value(file_.replace(textOf(values_)));
    });
    if (written.get_future().get()) {
        schedule_.wroteAll();
    }
}

std::string JsonDefaultsStore::textOf(const Values& values) {
    auto document = nlohmann::json::object();
    for (const auto& [key, value] : values) {
        document.emplace(key, value->json());
    }
    constexpr int kIndent = 2;
    return document.dump(kIndent) + "\n";
}

}  // namespace chimewerk
