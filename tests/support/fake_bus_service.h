// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>

#include <string>
#include <utility>

#include "linux/bus/bus_link.h"

namespace chimewerk {

/// The time between two attempts to reach the bus, in tests.
inline constexpr Seconds kTestRetryInterval{0.02};

/// Base class of fake services on a bus, which run on the test's queue. A service is on the bus as
/// long as the object exists, and reconnects after the bus has restarted.
class FakeBusService {
public:
    FakeBusService(const FakeBusService&) = delete;
    FakeBusService& operator=(const FakeBusService&) = delete;

protected:
    /// `path` is the topmost object of the service; `name` is its bus name.
    FakeBusService(EpollMainQueue& queue, BusLink::Opener opener, std::string name,
                   std::string path)
        : name_(std::move(name)),
          path_(std::move(path)),
          link_(
              queue, std::move(opener),
              {.onOpen = [this](sd_bus* bus) { open(bus); }, .onLost = [this] { bus_ = nullptr; }},
              kTestRetryInterval) {
        link_.keepOpen();
    }
    virtual ~FakeBusService() = default;

    /// Answers a call to one of the service's objects. Returns 0 if there is no such method
    /// or object.
    virtual int answer(sd_bus_message* call) = 0;

    /// The connection; null while the bus is away.
    sd_bus* bus() const { return bus_; }
    /// Emits a signal of the topmost object; `types` and `values` as for sd_bus_emit_signal.
    template <typename... Values>
    void emit(const char* interface, const char* signal, const char* types, Values... values) {
        sd_bus_emit_signal(bus_, path_.c_str(), interface, signal, types, values...);
    }

private:
    void open(sd_bus* bus) {
        bus_ = bus;
        sd_bus_add_fallback(bus, nullptr, path_.c_str(), callMember<&FakeBusService::onCall>, this);
        sd_bus_request_name_async(bus, nullptr, name_.c_str(), SD_BUS_NAME_QUEUE, nullptr, nullptr);
    }
    int onCall(sd_bus_message* call, sd_bus_error* /*error*/) { return answer(call); }

    const std::string name_;
    const std::string path_;
    sd_bus* bus_ = nullptr;
    BusLink link_;
};

}  // namespace chimewerk
