// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/power_events.h"

#include <optional>

namespace chimewerk {

namespace {

/// How long to wait before answering the sleep message.
constexpr Seconds kSleepDelay{0.35};
/// How long devices and the audio server take to return after a wake.
constexpr Seconds kWakeDelay{0.5};

}  // namespace

void PowerEvents::setupLidDetection() {
    deps_.system.registerHandler(
        lifeline_.guard([this](std::uint32_t messageType, std::intptr_t argument) {
            handleSleepMessage(messageType, argument);
        }));
}

void PowerEvents::handleSleepMessage(std::uint32_t messageType, std::intptr_t argument) {
    switch (std::int64_t{messageType}) {
        case kIOPMSystemWillSleep:
            deps_.sounds.play(event_ids::kLidClose);
            deps_.queue.postAfter(kSleepDelay, lifeline_.guard([this, argument] {
                deps_.system.allowPowerChange(argument);
            }));
            break;
        case kIOPMSystemWillPowerOn:
            break;
        case kIOPMSystemHasPoweredOn:
            deps_.queue.postAfter(kWakeDelay, lifeline_.guard([this] { wake(); }));
            break;
        default:
            deps_.system.allowPowerChange(argument);
    }
}

void PowerEvents::wake() {
    deps_.restartAudio();
    if (deps_.sounds.isEventEnabled(event_ids::kKeyPress)) {
        deps_.restartKeyboardMonitor();
    }
    deps_.sounds.play(event_ids::kLidOpen);
}

void PowerEvents::setupPowerMonitoring() {
    subscription_ = deps_.powerSources.subscribe(
        {.onKnown = [this] { takeStartingState(); }, .onChange = [this] { powerChanged(); }});
}

void PowerEvents::takeStartingState() {
    if (const auto source = deps_.powerSources.first()) {
        wasOnBattery = source->isOnBattery;
    }
}

void PowerEvents::powerChanged() {
    const std::optional<PowerSourceDescription> source = deps_.powerSources.first();
    if (!source) {
        return;
    }
    const bool onBattery = source->isOnBattery;
    if (wasOnBattery && !onBattery) {
        deps_.sounds.play(event_ids::kChargerConnect);
        batteryLowFired = false;
    }
    if (!wasOnBattery && onBattery) {
        deps_.sounds.play(event_ids::kChargerDisconnect);
    }
    wasOnBattery = onBattery;
    if (onBattery && !batteryLowFired) {
        checkCharge(*source);
    }
}

/// Counts as alerted even if the event is off.
void PowerEvents::checkCharge(const PowerSourceDescription& source) {
    const SoundEvent* const event = deps_.sounds.findEvent(event_ids::kBatteryLow);
    if (source.charge && event != nullptr &&
        static_cast<float>(*source.charge) <= event->threshold) {
        batteryLowFired = true;
        deps_.sounds.play(event_ids::kBatteryLow);
    }
}

}  // namespace chimewerk
