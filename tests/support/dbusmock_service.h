// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>

#include <memory>
#include <string>

#include "linux/bus/bus_link.h"
#include "tools/process/child_process.h"
#include "tools/process/eventually.h"

namespace chimewerk {

/// A service on the system bus, faked by python-dbusmock in a separate process and so independent
/// of our code. The test controls it over its own connection.
class DbusmockService {
public:
    /// `templateName` is a dbusmock template; check `isThere()` before use.
    DbusmockService(const std::string& templateName, std::string name, std::string path)
        : name_(std::move(name)),
          path_(std::move(path)),
          process_({"/usr/bin/python3", "-m", "dbusmock", "--system", "--template", templateName}) {
        sd_bus* bus = nullptr;
        sd_bus_open_system(&bus);
        bus_.reset(bus);
    }

    bool isThere() {
        return eventually(
            [this] { return sd_bus_get_name_creds(bus_.get(), name_.c_str(), 0, nullptr) >= 0; });
    }
    /// Calls a method and waits for the reply; returns null on failure.
    template <typename... Arguments>
    BusMessage call(const char* interface, const char* method, const char* types,
                    Arguments... arguments) {
        sd_bus_message* reply = nullptr;
        sd_bus_call_method(bus_.get(), name_.c_str(), path_.c_str(), interface, method, nullptr,
                           &reply, types, arguments...);
        return BusMessage(reply);
    }
    void kill() { process_.end(SIGKILL); }

private:
    const std::string name_;
    const std::string path_;
    ChildProcess process_;
    std::unique_ptr<sd_bus, UnrefBus> bus_;
};

}  // namespace chimewerk
