// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>

#include <map>
#include <string>
#include <utility>
#include <variant>

#include "support/fake_bus_service.h"

namespace chimewerk {

/// A fake UPower on the system bus, with properties for the machine and the display device. Runs on
/// the test's queue.
class FakeUPower final : public FakeBusService {
public:
    using Value = std::variant<bool, unsigned, double, std::string>;
    using Properties = std::map<std::string, Value>;

    FakeUPower(EpollMainQueue& queue, Properties machineNow, Properties deviceNow)
        : FakeBusService(queue, sd_bus_open_system, kMachine, kMachinePath),
          machine(std::move(machineNow)),
          device(std::move(deviceNow)) {}

    Properties machine;
    Properties device;
    /// Number of requests for either object.
    int asked = 0;
    /// If set, requests about the machine are not answered.
    bool isSilent = false;

    void changeMachine(const Properties& changes) {
        change(machine, changes, kMachinePath, kMachine);
    }
    void changeDevice(const Properties& changes) { change(device, changes, kDevicePath, kDevice); }

private:
    static constexpr const char* kMachinePath = "/org/freedesktop/UPower";
    static constexpr const char* kMachine = "org.freedesktop.UPower";
    static constexpr const char* kDevicePath = "/org/freedesktop/UPower/devices/DisplayDevice";
    static constexpr const char* kDevice = "org.freedesktop.UPower.Device";

    static void append(sd_bus_message* message, const Properties& properties) {
        sd_bus_message_open_container(message, 'a', "{sv}");
        for (const auto& [name, value] : properties) {
            const char* const key = name.c_str();
            if (const bool* flag = std::get_if<bool>(&value)) {
                sd_bus_message_append(message, "{sv}", key, "b", *flag ? 1 : 0);
            } else if (const unsigned* number = std::get_if<unsigned>(&value)) {
                sd_bus_message_append(message, "{sv}", key, "u", *number);
            } else if (const double* real = std::get_if<double>(&value)) {
                sd_bus_message_append(message, "{sv}", key, "d", *real);
            } else {
                sd_bus_message_append(message, "{sv}", key, "s",
                                      std::get<std::string>(value).c_str());
            }
        }
        sd_bus_message_close_container(message);
    }

    void change(Properties& now, const Properties& changes, const char* path,
                const char* interface) {
        for (const auto& [name, value] : changes) {
            now[name] = value;
        }
        sd_bus_message* signal = nullptr;
        sd_bus_message_new_signal(bus(), &signal, path, "org.freedesktop.DBus.Properties",
                                  "PropertiesChanged");
        const BusMessage owned(signal);
        sd_bus_message_append(signal, "s", interface);
        append(signal, changes);
        sd_bus_message_append(signal, "as", 0);
        sd_bus_send(bus(), signal, nullptr);
    }

    int answer(sd_bus_message* call) override {
        const bool isDevice = std::string(sd_bus_message_get_path(call)) == kDevicePath;
        const char* interface = nullptr;
        if (sd_bus_message_is_method_call(call, "org.freedesktop.DBus.Properties", "GetAll") == 0 ||
            sd_bus_message_read(call, "s", &interface) < 0 ||
            std::string(interface) != (isDevice ? kDevice : kMachine)) {
            return 0;
        }
        ++asked;
        if (isSilent && !isDevice) {
            return 1;
        }
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(call, &reply);
        const BusMessage owned(reply);
        append(reply, isDevice ? device : machine);
        return sd_bus_send(nullptr, reply, nullptr);
    }
};

}  // namespace chimewerk
