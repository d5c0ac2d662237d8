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

/// A question about a unit, until it is answered.
struct SystemdAppLaunches::Question {
    SystemdAppLaunches& asker;
    const std::string unitName;
};

SystemdAppLaunches::SystemdAppLaunches(EpollMainQueue& queue, std::function<void()> onLaunch)
    : onLaunch_(std::move(onLaunch)),
      link_(queue, sd_bus_open_user,
            {.onOpen = [this](sd_bus* bus) { open(bus); }, .onLost = [this] { hears_ = false; }}) {
    link_.keepOpen();
}

void SystemdAppLaunches::open(sd_bus* bus) {
    sd_bus_match_signal_async(bus, nullptr, kSystemd, kManagerPath, kManager, "JobRemoved",
                              onJobRemoved, nullptr, this);
    sd_bus_match_signal_async(bus, nullptr, kSystemd, kManagerPath, kManager, "UnitRemoved",
                              onUnitRemoved, nullptr, this);
    matchOwnerChanges(bus, kSystemd, onOwnerChanged, this);
    subscribe(bus);
}

/// Asks the manager to tell of its jobs, if there is a manager; it is not to be started for us.
void SystemdAppLaunches::subscribe(sd_bus* bus) {
    launches_.begin(now());
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus, &call, kSystemd, kManagerPath, kManager, "Subscribe") >=
        0) {
        const BusMessage owned(call);
        sd_bus_message_set_auto_start(call, 0);
        sd_bus_call_async(bus, nullptr, call, onSubscribed, this, 0);
    }
}

int SystemdAppLaunches::onSubscribed(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
    static_cast<SystemdAppLaunches*>(self)->hears_ =
        sd_bus_message_is_method_error(reply, nullptr) == 0;
    return 0;
}

int SystemdAppLaunches::onOwnerChanged(sd_bus_message* signal, void* self,
                                       sd_bus_error* /*error*/) {
    auto& launches = *static_cast<SystemdAppLaunches*>(self);
    const char* owner = nullptr;
    if (sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) >= 0) {
        launches.hears_ = false;
        if (*owner != '\0') {
            launches.subscribe(sd_bus_message_get_bus(signal));
        }
    }
    return 0;
}

int SystemdAppLaunches::onJobRemoved(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
    const char* unitName = nullptr;
    const char* result = nullptr;
    if (sd_bus_message_read(signal, "uoss", nullptr, nullptr, &unitName, &result) >= 0 &&
        AppUnit::isOne(unitName) && std::string_view(result) == "done") {
        static_cast<SystemdAppLaunches*>(self)->askSince(sd_bus_message_get_bus(signal), unitName);
    }
    return 0;
}

int SystemdAppLaunches::onUnitRemoved(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
    const char* unitName = nullptr;
    if (sd_bus_message_read(signal, "so", &unitName, nullptr) >= 0) {
        static_cast<SystemdAppLaunches*>(self)->launches_.forget(unitName);
    }
    return 0;
}

/// The signal says that a job is done but not whether it was a start; the unit says when it last became
/// active.
void SystemdAppLaunches::askSince(sd_bus* bus, const char* unitName) {
    char* path = nullptr;
    if (sd_bus_path_encode("/org/freedesktop/systemd1/unit", unitName, &path) < 0) {
        return;
    }
    const std::unique_ptr<char, FreeText> owned(path);
    std::unique_ptr<Question> question(new Question{*this, unitName});
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_method_async(bus, &slot, kSystemd, path, "org.freedesktop.DBus.Properties",
                                 "Get", onActiveSince, question.get(), "ss",
                                 "org.freedesktop.systemd1.Unit",
                                 "ActiveEnterTimestampMonotonic") < 0) {
        return;
    }
    // The question lives as long as the bus waits for the answer.
    sd_bus_slot_set_destroy_callback(slot,
                                     [](void* asked) { delete static_cast<Question*>(asked); });
    static_cast<void>(question.release());
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
}

int SystemdAppLaunches::onActiveSince(sd_bus_message* reply, void* question,
                                      sd_bus_error* /*error*/) {
    const auto& asked = *static_cast<Question*>(question);
    std::uint64_t microseconds = 0;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read(reply, "v", "t", &microseconds) >= 0 &&
        asked.asker.launches_.isLaunch(asked.unitName, AppUnitLaunches::Moment(microseconds))) {
        asked.asker.onLaunch_();
    }
    return 0;
}

}  // namespace chimewerk
