// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

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

    /// Starts a unit with these processes and reports the end of the job.
    void start(const std::string& unit, const std::vector<pid_t>& processes) {
        processes_[unit] = processes;
        reportJobEnd(unit, "done");
    }
    /// Stops a unit and reports the end of the job.
    void stop(const std::string& unit) {
        processes_.erase(unit);
        reportJobEnd(unit, "done");
    }
    /// Reports the end of any job of the unit, including one that stopped it or found it running.
    void reportJobEnd(const std::string& unit, const char* result) {
        emit(kManager, "JobRemoved", "uoss", ++lastJob_, "/org/freedesktop/systemd1/job/1",
             unit.c_str(), result);
    }

private:
    static constexpr const char* kManager = "org.freedesktop.systemd1.Manager";

    int answer(sd_bus_message* call) override {
        if (sd_bus_message_is_method_call(call, kManager, "Subscribe") != 0) {
            ++subscriptions;
            return 1;
        }
        const char* unit = nullptr;
        if (sd_bus_message_is_method_call(call, kManager, "GetUnitProcesses") == 0 ||
            sd_bus_message_read(call, "s", &unit) < 0) {
            return 0;
        }
        sd_bus_message* reply = nullptr;
        if (!processes_.contains(unit) || sd_bus_message_new_method_return(call, &reply) < 0) {
            return sd_bus_reply_method_errorf(call, "org.freedesktop.systemd1.NoSuchUnit",
                                              "Unit %s not loaded.", unit);
        }
        const BusMessage owned(reply);
        sd_bus_message_open_container(reply, 'a', "(sus)");
        for (const pid_t process : processes_.at(unit)) {
            sd_bus_message_append(reply, "(sus)", "/user.slice/app.slice", process, "a command");
        }
        sd_bus_message_close_container(reply);
        return sd_bus_send(nullptr, reply, nullptr);
    }

    std::map<std::string, std::vector<pid_t>> processes_;
    std::uint32_t lastJob_ = 0;
};

}  // namespace chimewerk
