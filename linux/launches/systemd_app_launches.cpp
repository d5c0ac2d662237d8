// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/systemd_app_launches.h"

#include <cstdlib>
#include <ctime>
#include <memory>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

constexpr const char* kSystemd = "org.freedesktop.systemd1";
constexpr const char* kManagerPath = "/org/freedesktop/systemd1";
constexpr const char* kManager = "org.freedesktop.systemd1.Manager";

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

AppUnitLaunches::Moment now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::duration_cast<AppUnitLaunches::Moment>(
        std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

}  // namespace

/// Asks when a unit became active. Lives until the answer arrives.
struct SystemdAppLaunches::Query {
    SystemdAppLaunches& source;
    const std::string unitName;

    void onAnswer(sd_bus_message* reply) {
        std::uint64_t microseconds = 0;
        if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
            sd_bus_message_read(reply, "v", "t", &microseconds) >= 0 &&
            source.launches_.isLaunch(unitName, AppUnitLaunches::Moment(microseconds))) {
            source.onLaunch_();
        }
    }
};

SystemdAppLaunches::SystemdAppLaunches(EpollMainQueue& queue, std::function<void()> onLaunch,
                                       Seconds retryInterval)
    : onLaunch_(std::move(onLaunch)),
      link_(queue, sd_bus_open_user,
            {.onOpen = [this](sd_bus* bus) { open(bus); },
             .onLost = [this] { isSubscribed_ = false; }},
            retryInterval) {
    link_.keepOpen();
}

void SystemdAppLaunches::open(sd_bus* bus) {
    sd_bus_match_signal_async(bus, nullptr, kSystemd, kManagerPath, kManager, "JobRemoved",
                              callMember<&SystemdAppLaunches::onJobRemoved>, nullptr, this);
    sd_bus_match_signal_async(bus, nullptr, kSystemd, kManagerPath, kManager, "UnitRemoved",
                              callMember<&SystemdAppLaunches::onUnitRemoved>, nullptr, this);
    matchOwnerChanges(bus, kSystemd, callMember<&SystemdAppLaunches::onOwnerChanged>, this);
    subscribe(bus);
}

/// Subscribes to the manager's jobs if the manager is running; does not start it.
void SystemdAppLaunches::subscribe(sd_bus* bus) {
    launches_.begin(now());
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus, &call, kSystemd, kManagerPath, kManager, "Subscribe") >=
        0) {
        const BusMessage owned(call);
        sd_bus_message_set_auto_start(call, 0);
        sd_bus_call_async(bus, nullptr, call, callMember<&SystemdAppLaunches::onSubscribed>, this,
                          0);
    }
}

void SystemdAppLaunches::onSubscribed(sd_bus_message* reply) {
    isSubscribed_ = sd_bus_message_is_method_error(reply, nullptr) == 0;
}

void SystemdAppLaunches::onOwnerChanged(sd_bus_message* signal) {
    const char* const owner = readNewOwner(signal);
    if (owner == nullptr) {
        return;
    }
    isSubscribed_ = false;
    if (*owner != '\0') {
        subscribe(sd_bus_message_get_bus(signal));
    }
}

void SystemdAppLaunches::onJobRemoved(sd_bus_message* signal) {
    const char* unitName = nullptr;
    const char* result = nullptr;
    if (sd_bus_message_read(signal, "uoss", nullptr, nullptr, &unitName, &result) >= 0 &&
        AppUnit::isOne(unitName) && std::string_view(result) == "done") {
        requestActivationTime(sd_bus_message_get_bus(signal), unitName);
    }
}

void SystemdAppLaunches::onUnitRemoved(sd_bus_message* signal) {
    const char* unitName = nullptr;
    if (sd_bus_message_read(signal, "so", &unitName, nullptr) >= 0) {
        launches_.forget(unitName);
    }
}

/// Asks when the unit last became active, because the signal does not say whether the job was
/// a start.
void SystemdAppLaunches::requestActivationTime(sd_bus* bus, const char* unitName) {
    char* path = nullptr;
    if (sd_bus_path_encode("/org/freedesktop/systemd1/unit", unitName, &path) < 0) {
        return;
    }
    const std::unique_ptr<char, FreeText> owned(path);
    std::unique_ptr<Query> query(new Query{*this, unitName});
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_method_async(bus, &slot, kSystemd, path, "org.freedesktop.DBus.Properties",
                                 "Get", callMember<&Query::onAnswer>, query.get(), "ss",
                                 "org.freedesktop.systemd1.Unit",
                                 "ActiveEnterTimestampMonotonic") < 0) {
        return;
    }
    // sd-bus destroys the query together with the slot.
    sd_bus_slot_set_destroy_callback(slot, [](void* ended) { delete static_cast<Query*>(ended); });
    static_cast<void>(query.release());
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
}

}  // namespace chimewerk
