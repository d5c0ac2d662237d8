#pragma once

#include <memory>
#include <optional>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/bus_link.h"
#include "monitors/power_sources.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// UPower's composite display device as the one power source: whether the machine runs on battery and how far
/// it is charged. It is kept current by UPower's signals, so that a look asks nobody. A machine without a
/// battery has no source.
///
/// The state counts as known once a source has been found; so a machine that is found running on battery,
/// late or not, was so from the start. While UPower or the bus is away, the last state holds: only what they
/// tell when they are back can be a change. UPower is started once, by being asked. Main thread only.
class UPowerPowerSources final : public PowerSources {
public:
    /// The queue outlives the object.
    explicit UPowerPowerSources(EpollMainQueue& queue);

    std::optional<PowerSourceDescription> first() const override { return source_; }
    /// The first one connects to the bus.
    std::unique_ptr<Subscription> subscribe(Callbacks callbacks) override;

private:
    class Ending;
    /// What UPower has told; none for what it has not.
    struct Facts {
        std::optional<bool> onBattery;
        std::optional<bool> isPresent;
        std::optional<unsigned> type;
        std::optional<double> percentage;
    };

    void open(sd_bus* bus);
    void ask(sd_bus* bus);
    BusSlot askFor(sd_bus* bus, const char* path, const char* interface,
                   sd_bus_message_handler_t onAnswer);
    void take(sd_bus_message* properties);
    void takeOne(sd_bus_message* properties);
    void lookLater();
    void look();
    std::optional<PowerSourceDescription> describe() const;

    static int onMachine(sd_bus_message* reply, void* self, sd_bus_error* error);
    static int onDevice(sd_bus_message* reply, void* self, sd_bus_error* error);
    static int onPropertiesChanged(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onOwnerChanged(sd_bus_message* signal, void* self, sd_bus_error* error);

    EpollMainQueue& queue_;
    Callbacks callbacks_;
    std::optional<PowerSourceDescription> source_;
    bool isKnown_ = false;

    Facts facts_;
    /// Whether UPower has told everything since it has been there.
    bool machineTold_ = false;
    bool deviceTold_ = false;
    bool isLookDue_ = false;

    BusLink link_;
    // The questions end before the bus that they are asked on.
    BusSlot askingMachine_;
    BusSlot askingDevice_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
