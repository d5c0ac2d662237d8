// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>

#include "linux/base/epoll_main_queue.h"
#include "linux/bus/bus_link.h"
#include "monitors/power_sources.h"
#include "platform/delayed_call.h"
#include "platform/source_report.h"

namespace chimewerk {

/// UPower's composite display device as the only power source: whether the machine runs on battery,
/// and the charge. UPower's signals keep it current, so reading it makes no call. A machine without
/// a battery has no source.
///
/// The state is known once a source has been found. So a machine that is then on battery counts as
/// on battery from the start, however late UPower answers. While UPower or the bus is away, the
/// last state stays valid; only what they report on their return can be a change. The first request
/// starts UPower. Main thread only.
class UPowerPowerSources final : public PowerSources, public ReportsItself {
public:
    /// The queue must outlive the object. `retryInterval` is the time between two attempts to reach
    /// the bus.
    explicit UPowerPowerSources(EpollMainQueue& queue, Seconds retryInterval = kRetryInterval);

    std::optional<PowerSourceDescription> first() const override { return source_; }
    /// The first subscription connects to the bus.
    std::unique_ptr<Subscription> subscribe(Callbacks callbacks) override;
    SourceReport report() override;

private:
    class Ending;
    /// What UPower has reported so far.
    struct Facts {
        std::optional<bool> onBattery;
        std::optional<bool> isPresent;
        std::optional<unsigned> type;
        std::optional<double> percentage;
    };

    void open(sd_bus* bus);
    void requestAll(sd_bus* bus);
    BusSlot requestProperties(sd_bus* bus, const char* path, const char* interface,
                              sd_bus_message_handler_t onReply);
    void readProperties(sd_bus_message* properties);
    void readProperty(sd_bus_message* properties);
    void check();
    std::optional<PowerSourceDescription> describe() const;

    void onMachine(sd_bus_message* reply);
    void onDevice(sd_bus_message* reply);
    void onPropertiesChanged(sd_bus_message* signal);
    void onOwnerChanged(sd_bus_message* signal);

    Callbacks callbacks_;
    std::optional<PowerSourceDescription> source_;
    bool isKnown_ = false;

    Facts facts_;
    /// Whether UPower has answered for each object since the last request.
    bool machineKnown_ = false;
    bool deviceKnown_ = false;

    BusLink link_;
    // Destroyed before the bus on which the requests were sent.
    BusSlot machineRequest_;
    BusSlot deviceRequest_;
    /// UPower reports the machine and the device in two messages; together they are one change.
    DelayedCall delayedCheck_;
};

}  // namespace chimewerk
