// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/systemd_app_launches.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "linux/launches/app_unit.h"

namespace chimewerk {

namespace {

constexpr const char* kSystemd = "org.freedesktop.systemd1";
constexpr const char* kManagerPath = "/org/freedesktop/systemd1";
constexpr const char* kManager = "org.freedesktop.systemd1.Manager";

/// Asks the manager to report its jobs if it is running; does not start it.
void subscribe(sd_bus* bus) {
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus, &call, kSystemd, kManagerPath, kManager, "Subscribe") >=
        0) {
        const BusMessage owned(call);
        sd_bus_message_set_auto_start(call, 0);
        sd_bus_message_set_expect_reply(call, 0);
        sd_bus_send(bus, call, nullptr);
    }
}

}  // namespace

/// Asks which processes a unit holds. Lives until the answer arrives.
struct SystemdAppLaunches::Query {
    SystemdAppLaunches& source;
    const std::string unitName;

    void onAnswer(sd_bus_message* reply) {
        LaunchSign sign{.found = LaunchCandidate::Found::inUnit, .unit = unitName};
        if (sd_bus_message_is_method_error(reply, nullptr) != 0 ||
            sd_bus_message_enter_container(reply, 'a', "(sus)") < 0) {
            return;
        }
        std::uint32_t process = 0;
        while (sd_bus_message_read(reply, "(sus)", nullptr, &process, nullptr) > 0) {
            sign.processes.push_back(static_cast<pid_t>(process));
        }
        if (!sign.processes.empty()) {
            source.onUnit_(std::move(sign));
        }
    }
};

SystemdAppLaunches::SystemdAppLaunches(EpollMainQueue& queue, OnUnit onUnit, Seconds retryInterval)
    : queue_(queue),
      onUnit_(std::move(onUnit)),
      link_(queue, sd_bus_open_user,
            {.onOpen = [this](sd_bus* bus) { open(bus); }, .onLost = [this] { bus_ = nullptr; }},
            retryInterval) {
    link_.keepOpen();
}

void SystemdAppLaunches::open(sd_bus* bus) {
    bus_ = bus;
    sd_bus_match_signal_async(bus, nullptr, kSystemd, kManagerPath, kManager, "JobRemoved",
                              callMember<&SystemdAppLaunches::onJobRemoved>, nullptr, this);
    matchOwnerChanges(bus, kSystemd, callMember<&SystemdAppLaunches::onOwnerChanged>, this);
    subscribe(bus);
}

void SystemdAppLaunches::onOwnerChanged(sd_bus_message* signal) {
    const char* const owner = readNewOwner(signal);
    if (owner != nullptr && *owner != '\0') {
        subscribe(sd_bus_message_get_bus(signal));
    }
}

/// The signal does not say whether the job was a start; after a stop the unit holds no processes.
void SystemdAppLaunches::onJobRemoved(sd_bus_message* signal) {
    const char* unitName = nullptr;
    const char* result = nullptr;
    if (sd_bus_message_read(signal, "uoss", nullptr, nullptr, &unitName, &result) >= 0 &&
        AppUnit::isOne(unitName) && std::string_view(result) == "done") {
        queue_.postAfter(AppLaunches::kShortestRun,
                         lifeline_.guard([this, name = std::string(unitName)] {
                             if (bus_ != nullptr) {
                                 requestProcesses(name);
                             }
                         }));
    }
}

void SystemdAppLaunches::requestProcesses(const std::string& unitName) {
    std::unique_ptr<Query> query(new Query{*this, unitName});
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_method_async(bus_, &slot, kSystemd, kManagerPath, kManager, "GetUnitProcesses",
                                 callMember<&Query::onAnswer>, query.get(), "s",
                                 unitName.c_str()) < 0) {
        return;
    }
    // sd-bus destroys the query together with the slot.
    sd_bus_slot_set_destroy_callback(slot, [](void* ended) { delete static_cast<Query*>(ended); });
    static_cast<void>(query.release());
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
}

}  // namespace chimewerk
