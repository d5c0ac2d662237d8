// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/power/upower_power_sources.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

constexpr const char* kUPower = "org.freedesktop.UPower";
constexpr const char* kMachinePath = "/org/freedesktop/UPower";
constexpr const char* kMachine = "org.freedesktop.UPower";
constexpr const char* kDevicePath = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char* kDevice = "org.freedesktop.UPower.Device";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

// UPower's device types.
constexpr unsigned kBattery = 2;
constexpr unsigned kUninterruptiblePowerSupply = 3;

/// Two messages about one change arrive within this time.
constexpr Seconds kTogether{0.05};

/// Reads a variant of this type; skips a variant of another type and returns none.
template <typename Value>
std::optional<Value> readVariant(sd_bus_message* message, const char* type) {
    Value value{};
    if (sd_bus_message_verify_type(message, 'v', type) > 0 &&
        sd_bus_message_read(message, "v", type, &value) >= 0) {
        return value;
    }
    sd_bus_message_skip(message, "v");
    return {};
}

std::optional<bool> readFlag(sd_bus_message* message) {
    const auto flag = readVariant<int>(message, "b");
    return flag ? std::optional(*flag != 0) : std::nullopt;
}

}  // namespace

class UPowerPowerSources::Ending final : public Subscription {
public:
    explicit Ending(UPowerPowerSources& sources) : sources_(sources) {}
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;
    ~Ending() override { sources_.callbacks_ = {}; }

private:
    UPowerPowerSources& sources_;
};

UPowerPowerSources::UPowerPowerSources(EpollMainQueue& queue, Seconds retryInterval)
    : link_(queue, sd_bus_open_system, {.onOpen = [this](sd_bus* bus) { open(bus); }},
            retryInterval),
      delayedCheck_(queue, kTogether, [this] { check(); }) {}

std::unique_ptr<PowerSources::Subscription> UPowerPowerSources::subscribe(Callbacks callbacks) {
    callbacks_ = std::move(callbacks);
    link_.keepOpen();
    if (isKnown_) {
        callbacks_.onKnown();
    }
    return std::make_unique<Ending>(*this);
}

SourceReport UPowerPowerSources::report() {
    if (!machineKnown_ || !deviceKnown_) {
        return {.mechanism = "no UPower",
                .missing = "UPower, which knows the battery, does not answer.",
                .advice = "Install the package upower."};
    }
    if (!source_) {
        return {.mechanism = "UPower, no battery",
                .missing = "There is no battery.",
                .lacksHardware = true};
    }
    const std::string charge =
        source_->charge ? std::to_string(std::lround(*source_->charge)) + " %, " : "";
    return {.mechanism =
                "UPower, " + charge + (source_->isOnBattery ? "on battery" : "on mains power")};
}

void UPowerPowerSources::open(sd_bus* bus) {
    for (const char* const path : {kMachinePath, kDevicePath}) {
        sd_bus_match_signal_async(bus, nullptr, kUPower, path, kProperties, "PropertiesChanged",
                                  callMember<&UPowerPowerSources::onPropertiesChanged>, nullptr,
                                  this);
    }
    matchOwnerChanges(bus, kUPower, callMember<&UPowerPowerSources::onOwnerChanged>, this);
    requestAll(bus);
}

/// Asks for all properties of both objects. The old state stays valid until both have answered.
void UPowerPowerSources::requestAll(sd_bus* bus) {
    facts_ = {};
    machineKnown_ = deviceKnown_ = false;
    machineRequest_ =
        requestProperties(bus, kMachinePath, kMachine, callMember<&UPowerPowerSources::onMachine>);
    deviceRequest_ =
        requestProperties(bus, kDevicePath, kDevice, callMember<&UPowerPowerSources::onDevice>);
}

BusSlot UPowerPowerSources::requestProperties(sd_bus* bus, const char* path, const char* interface,
                                              sd_bus_message_handler_t onReply) {
    sd_bus_slot* request = nullptr;
    sd_bus_call_method_async(bus, &request, kUPower, path, kProperties, "GetAll", onReply, this,
                             "s", interface);
    return BusSlot(request);
}

void UPowerPowerSources::onMachine(sd_bus_message* reply) {
    if (sd_bus_message_is_method_error(reply, nullptr) == 0) {
        machineKnown_ = true;
        readProperties(reply);
    }
}

void UPowerPowerSources::onDevice(sd_bus_message* reply) {
    if (sd_bus_message_is_method_error(reply, nullptr) == 0) {
        deviceKnown_ = true;
        readProperties(reply);
    }
}

void UPowerPowerSources::onPropertiesChanged(sd_bus_message* signal) {
    if (sd_bus_message_skip(signal, "s") >= 0) {
        readProperties(signal);
    }
}

/// Asks UPower only if it is running, because a request would start it.
void UPowerPowerSources::onOwnerChanged(sd_bus_message* signal) {
    const char* const owner = readNewOwner(signal);
    if (owner != nullptr && *owner != '\0') {
        requestAll(sd_bus_message_get_bus(signal));
    }
}

/// Reads the properties of either object; the relevant ones have different names.
void UPowerPowerSources::readProperties(sd_bus_message* properties) {
    if (sd_bus_message_enter_container(properties, 'a', "{sv}") < 0) {
        return;
    }
    while (sd_bus_message_enter_container(properties, 'e', "sv") > 0) {
        readProperty(properties);
        sd_bus_message_exit_container(properties);
    }
    delayedCheck_.schedule();
}

void UPowerPowerSources::readProperty(sd_bus_message* properties) {
    const char* text = nullptr;
    if (sd_bus_message_read(properties, "s", &text) < 0) {
        return;
    }
    const std::string_view name = text;
    if (name == "OnBattery") {
        facts_.onBattery = readFlag(properties);
    } else if (name == "IsPresent") {
        facts_.isPresent = readFlag(properties);
    } else if (name == "Type") {
        facts_.type = readVariant<unsigned>(properties, "u");
    } else if (name == "Percentage") {
        facts_.percentage = readVariant<double>(properties, "d");
        if (facts_.percentage) {
            // Desktops show the whole percents: 20.9 % is 20 % to the user.
            facts_.percentage = std::floor(*facts_.percentage);
        }
    } else {
        sd_bus_message_skip(properties, "v");
    }
}

void UPowerPowerSources::check() {
    if (!machineKnown_ || !deviceKnown_) {
        return;
    }
    const std::optional<PowerSourceDescription> now = describe();
    if (now == source_) {
        return;
    }
    source_ = now;
    const std::function<void()> call = isKnown_ ? callbacks_.onChange : callbacks_.onKnown;
    isKnown_ = true;
    if (call) {
        call();
    }
}

std::optional<PowerSourceDescription> UPowerPowerSources::describe() const {
    if (!facts_.isPresent.value_or(false) ||
        (facts_.type != kBattery && facts_.type != kUninterruptiblePowerSupply)) {
        return {};
    }
    return PowerSourceDescription{.isOnBattery = facts_.onBattery.value_or(false),
                                  .charge = facts_.percentage};
}

}  // namespace chimewerk
