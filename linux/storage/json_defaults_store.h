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

/// The user's settings in one JSON file, "chimewerk/settings.json" in the configuration folder. It is read
/// once and then written as a whole, on the worker, a moment after each burst of changes. Values that the
/// program does not know stay in the file. A file that cannot be understood is set aside under another name;
/// while the disk takes nothing, the settings live in memory, and are written as soon as it does.
class JsonDefaultsStore final : public DefaultsStore {
public:
    /// Reads the file. `configHome` is the user's configuration folder; when it is empty, nothing is read or
    /// written. The queue outlives the store.
    JsonDefaultsStore(MainQueue& queue, const std::string& configHome);
    /// As `flush()`.
    ~JsonDefaultsStore() override;

    void setObject(std::string_view key, std::optional<DefaultsValue> value) override;
    void setData(std::string_view key, MakeData make) override;
    std::optional<DefaultsValue> object(std::string_view key) const override;
    std::shared_ptr<const void> holdWrites() override { return schedule_.hold(); }
    void keepDamaged() override;

    /// Writes what is not yet written and waits for it; one attempt. For the end of the program.
    void flush();

private:
    class Value;
    /// Values never change, so that a copy of the map is the state of a moment, for any thread.
    using Values = std::map<std::string, std::shared_ptr<const Value>, std::less<>>;

    void load();
    void put(std::string_view key, std::shared_ptr<const Value> value);
    void beginWrite(WriteSchedule::Done done);
    static std::string textOf(const Values& values);

    MainQueue& queue_;
    Values values_;
    SettingsFile file_;  // used by the constructor, and from then on by the worker
    WriteSchedule schedule_;
    Worker worker_;
};

}  // namespace chimewerk
