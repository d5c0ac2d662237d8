// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>

#include "support/fake_bus_service.h"

namespace chimewerk {

/// A fake systemd user manager on the session bus that reports units. Runs on the test's queue.
class FakeUserManager final : public FakeBusService {
public:
    explicit FakeUserManager(EpollMainQueue& queue)
        : FakeBusService(queue, sd_bus_open_user, "org.freedesktop.systemd1",
                         "/org/freedesktop/systemd1") {}

    /// Number of subscriptions.
    int subscriptions = 0;

    /// Activates a unit and reports the end of the job that started it.
    void start(const std::string& unit) {
        timespec time{};
        clock_gettime(CLOCK_MONOTONIC, &time);
        activeSince_[pathOf(unit)] = static_cast<std::uint64_t>(time.tv_sec) * 1'000'000 +
                                     static_cast<std::uint64_t>(time.tv_nsec) / 1000;
        reportNewUnit(unit);
        reportJobEnd(unit, "done");
    }
    /// Reports a new unit that was loaded but not started.
    void reportNewUnit(const std::string& unit) {
        emit(kManager, "UnitNew", "so", unit.c_str(), pathOf(unit).c_str());
    }
    /// Reports the end of any job of the unit, including one that stopped it or found it running.
    void reportJobEnd(const std::string& unit, const char* result) {
        emit(kManager, "JobRemoved", "uoss", ++lastJob_, "/org/freedesktop/systemd1/job/1",
             unit.c_str(), result);
    }
    /// Unloads a unit that has ended.
    void remove(const std::string& unit) {
        activeSince_.erase(pathOf(unit));
        emit(kManager, "UnitRemoved", "so", unit.c_str(), pathOf(unit).c_str());
    }

private:
    static constexpr const char* kManager = "org.freedesktop.systemd1.Manager";

    static std::string pathOf(const std::string& unit) {
        char* path = nullptr;
        sd_bus_path_encode("/org/freedesktop/systemd1/unit", unit.c_str(), &path);
        std::string copy = path;
        std::free(path);
        return copy;
    }

    int answer(sd_bus_message* call) override {
        if (sd_bus_message_is_method_call(call, kManager, "Subscribe") != 0) {
            ++subscriptions;
            return sd_bus_reply_method_return(call, "");
        }
        const auto unit = activeSince_.find(sd_bus_message_get_path(call));
        const char* property = nullptr;
        if (sd_bus_message_is_method_call(call, "org.freedesktop.DBus.Properties", "Get") == 0 ||
            unit == activeSince_.end() || sd_bus_message_read(call, "ss", nullptr, &property) < 0 ||
            std::string(property) != "ActiveEnterTimestampMonotonic") {
            return 0;  // sd-bus replies that there is no such object.
        }
        return sd_bus_reply_method_return(call, "v", "t", unit->second);
    }

    std::map<std::string, std::uint64_t> activeSince_;
    std::uint32_t lastJob_ = 0;
};

}  // namespace chimewerk
