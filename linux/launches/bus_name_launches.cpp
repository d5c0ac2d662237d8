// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/bus_name_launches.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

constexpr const char* kBus = "org.freedesktop.DBus";
constexpr Seconds kLookInterval{0.5};
constexpr int kMostLooks = 60;

/// Returns the object that an application with this name has: /org/gnome/Maps for org.gnome.Maps.
std::string objectOf(const std::string& name) {
    std::string path = "/" + name;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return path;
}

}  // namespace

/// What a call is to find out. Lives until the answer arrives.
struct BusNameLaunches::Question {
    BusNameLaunches& source;
    LaunchSign sign;
    /// How many more times to ask for a window.
    int looks = 0;

    void onProcess(sd_bus_message* reply) {
        std::uint32_t process = 0;
        if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
            sd_bus_message_read(reply, "u", &process) >= 0) {
            sign.processes.push_back(static_cast<pid_t>(process));
            source.onName_(std::move(sign));
        }
    }

    void onObjects(sd_bus_message* reply) {
        const char* description = nullptr;
        if (sd_bus_message_is_method_error(reply, nullptr) != 0 ||
            sd_bus_message_read(reply, "s", &description) < 0) {
            return;  // It has ended, or it is none of GTK.
        }
        if (std::string_view(description).find("<node name=\"window\"") != std::string_view::npos) {
            sign.hasWindow = true;
            source.onName_(std::move(sign));
        } else if (looks > 0) {
            source.askForWindow(sign, looks);
        }
    }
};

BusNameLaunches::BusNameLaunches(EpollMainQueue& queue, OnName onName, Seconds retryInterval)
    : queue_(queue),
      onName_(std::move(onName)),
      link_(queue, sd_bus_open_user,
            {.onOpen =
                 [this](sd_bus* bus) {
                     bus_ = bus;
                     sd_bus_match_signal_async(
                         bus, nullptr, kBus, "/org/freedesktop/DBus", kBus, "NameOwnerChanged",
                         callMember<&BusNameLaunches::onOwnerChanged>, nullptr, this);
                 },
             .onLost = [this] { bus_ = nullptr; }},
            retryInterval) {
    link_.keepOpen();
}

void BusNameLaunches::onOwnerChanged(sd_bus_message* signal) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* owner = nullptr;
    if (sd_bus_message_read(signal, "sss", &name, &before, &owner) < 0 || *name == ':' ||
        *before != '\0' || *owner == '\0') {
        return;
    }
    queue_.postAfter(AppLaunches::kShortestRun,
                     lifeline_.guard([this, name = std::string(name)] { askForProcess(name); }));
}

void BusNameLaunches::askForProcess(const std::string& name) {
    LaunchSign sign{.found = LaunchCandidate::Found::byBusName, .application = name};
    std::unique_ptr<Question> question(new Question{*this, std::move(sign)});
    ask<&Question::onProcess>(std::move(question), kBus, "/org/freedesktop/DBus", kBus,
                              "GetConnectionUnixProcessID", name.c_str());
}

void BusNameLaunches::awaitWindow(const LaunchSign& sign) {
    askForWindow(sign, kMostLooks);
}

void BusNameLaunches::askForWindow(const LaunchSign& sign, int looks) {
    queue_.postAfter(kLookInterval, lifeline_.guard([this, sign, looks] {
        std::unique_ptr<Question> question(new Question{*this, sign, looks - 1});
        ask<&Question::onObjects>(std::move(question), sign.application, objectOf(sign.application),
                                  "org.freedesktop.DBus.Introspectable", "Introspect");
    }));
}

template <auto onAnswer>
void BusNameLaunches::ask(std::unique_ptr<Question> question, const std::string& service,
                          const std::string& path, const char* interface, const char* method,
                          const char* argument) {
    sd_bus_message* call = nullptr;
    sd_bus_slot* slot = nullptr;
    if (bus_ == nullptr || sd_bus_message_new_method_call(bus_, &call, service.c_str(),
                                                          path.c_str(), interface, method) < 0) {
        return;
    }
    const BusMessage owned(call);
    sd_bus_message_set_auto_start(call, 0);
    if ((argument != nullptr && sd_bus_message_append(call, "s", argument) < 0) ||
        sd_bus_call_async(bus_, &slot, call, callMember<onAnswer>, question.get(), 0) < 0) {
        return;
    }
    // sd-bus destroys the question together with the slot.
    sd_bus_slot_set_destroy_callback(slot,
                                     [](void* ended) { delete static_cast<Question*>(ended); });
    static_cast<void>(question.release());
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
}

}  // namespace chimewerk
