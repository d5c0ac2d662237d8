// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <memory>
#include <string>

#include "linux/base/worker.h"
#include "linux/storage/settings_file.h"
#include "linux/storage/write_schedule.h"
#include "platform/defaults_store.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// The user's settings in one JSON file, "chimewerk/settings.json" in the configuration folder.
/// Reads it once; a worker writes the whole file shortly after each burst of changes. Keeps values
/// that the program does not know. A file that cannot be parsed is renamed and kept. While writing
/// fails, the settings are kept in memory, and writing is retried.
class JsonDefaultsStore final : public DefaultsStore {
public:
    /// Reads the file. `configHome` is the user's configuration folder; if empty, nothing is read
    /// or written. The queue must outlive the store.
    JsonDefaultsStore(MainQueue& queue, const std::string& configHome);
    /// Calls `flush()`.
    ~JsonDefaultsStore() override;

    void setObject(std::string_view key, std::optional<DefaultsValue> value) override;
    void setData(std::string_view key, MakeData make) override;
    std::optional<DefaultsValue> object(std::string_view key) const override;
    std::shared_ptr<const void> holdWrites() override { return schedule_.hold(); }
    void keepDamaged() override;

    /// Writes unwritten changes in one attempt and waits for that. For the end of the program.
    void flush();

private:
    class Value;
    /// Values never change, so a copy of the map is a snapshot for any thread.
    using Values = std::map<std::string, std::shared_ptr<const Value>, std::less<>>;

    void load();
    void put(std::string_view key, std::shared_ptr<const Value> value);
    void beginWrite(WriteSchedule::Done done);
    static std::string textOf(const Values& values);

    MainQueue& queue_;
    Values values_;
    SettingsFile file_;  // Used by the constructor, then only by the worker
    WriteSchedule schedule_;
    Worker worker_;
};

}  // namespace chimewerk
