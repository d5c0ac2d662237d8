// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>

#include <string>
#include <utility>

#include "linux/links/bus_link.h"

namespace chimewerk {

/// A bus that returns is found after this time in tests.
inline constexpr Seconds kTestRetryInterval{0.02};

/// Base of the services that a test plays on a bus, with the test's queue. The service is on the bus
/// from its construction to its end, and returns to a bus that was away.
class FakeBusService {
public:
    FakeBusService(const FakeBusService&) = delete;
    FakeBusService& operator=(const FakeBusService&) = delete;

protected:
    /// `path` is the topmost object of the service that owns `name`.
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

    /// Answers a call of one of the service's objects; 0 if there is no such method or object.
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
