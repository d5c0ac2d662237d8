#include "monitors/power_events.h"

#include <optional>

namespace chimewerk {

namespace {

/// The system sleeps this long after it has said so.
constexpr Seconds kSleepDelay{0.35};
/// Devices and the sound server need a moment after a wake.
constexpr Seconds kWakeDelay{0.5};

bool isOnBattery(const PowerSourceDescription& source) {
    return source.state == kBatteryPower;
}

}  // namespace

void PowerEvents::setupLidDetection() {
    around_.system.registerHandler(lifeline_.guard([this](std::uint32_t messageType, std::intptr_t argument) {
        handleSleepMessage(messageType, argument);
    }));
}

void PowerEvents::handleSleepMessage(std::uint32_t messageType, std::intptr_t argument) {
    switch (std::int64_t{messageType}) {
        case kIOPMSystemWillSleep:
            around_.sounds.play("lid_close");
            around_.queue.postAfter(kSleepDelay, lifeline_.guard([this, argument] {
                around_.system.allowPowerChange(argument);
            }));
            break;
        case kIOPMSystemWillPowerOn:
            break;
        case kIOPMSystemHasPoweredOn:
            around_.queue.postAfter(kWakeDelay, lifeline_.guard([this] { wake(); }));
            break;
        default:
            around_.system.allowPowerChange(argument);
    }
}

void PowerEvents::wake() {
    around_.restartAudio();
    if (around_.sounds.isEventEnabled("key_press")) {
        around_.restartKeyboardMonitor();
    }
    around_.sounds.play("lid_open");
}

void PowerEvents::setupPowerMonitoring() {
    subscription_ = around_.powerSources.subscribe(
        {.onKnown = [this] { takeStartingState(); }, .onChange = [this] { powerChanged(); }});
}

void PowerEvents::takeStartingState() {
    if (const auto source = around_.powerSources.first()) {
        wasOnBattery = isOnBattery(*source);
    }
}

void PowerEvents::powerChanged() {
    const std::optional<PowerSourceDescription> source = around_.powerSources.first();
    if (!source) {
        return;
    }
    const bool onBattery = isOnBattery(*source);
    if (wasOnBattery && !onBattery) {
        around_.sounds.play("charger_connect");
        batteryLowFired = false;
    }
    if (!wasOnBattery && onBattery) {
        around_.sounds.play("charger_disconnect");
    }
    wasOnBattery = onBattery;
    if (onBattery && !batteryLowFired) {
        checkCharge(*source);
    }
}

/// The alert counts as given even when its event is switched off.
void PowerEvents::checkCharge(const PowerSourceDescription& source) {
    const SoundEvent* const event = around_.sounds.findEvent("battery_low");
    if (source.currentCapacity && event != nullptr &&
        static_cast<float>(*source.currentCapacity) <= event->threshold) {
        batteryLowFired = true;
        around_.sounds.play("battery_low");
    }
}

}  // namespace chimewerk
