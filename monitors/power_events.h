// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "monitors/power_sources.h"
#include "monitors/sleep_source.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// Plays the events of the machine's power state: sleep and wake, which stand for closing and
/// opening the lid; the charger; and a low battery. After a wake it also restarts the microphone
/// and keyboard monitors. Main thread only.
class PowerEvents {
public:
    /// All of these must outlive the object.
    struct Dependencies {
        MainQueue& queue;
        SoundManager& sounds;
        SleepSource& system;
        PowerSources& powerSources;
        /// Restarts the microphone.
        std::function<void()> restartAudio;
        /// Restarts the keyboard monitor; called only while "key_press" is on.
        std::function<void()> restartKeyboardMonitor;
    };

    explicit PowerEvents(Dependencies dependencies) : deps_(std::move(dependencies)) {}

    /// Registers for the system's power messages until the process ends. Without them, sleep and
    /// wake play nothing. Call once.
    void setupLidDetection();

    /// Handles one power message. Going to sleep is allowed 0.35 s later, so that the sound can
    /// begin; a wake needs no answer; every other message is answered at once.
    void handleSleepMessage(std::uint32_t messageType, std::intptr_t argument);

    /// Takes the current charger state as the start, as soon as it is known, and follows
    /// its changes. Plays nothing and does not check the charge at the start. Call once,
    /// before `stop()`.
    void setupPowerMonitoring();

    /// Reads the first power source and plays the events of its changes.
    void powerChanged();

    /// Allows another low-battery alert during this discharge, because its threshold has changed.
    void resetBatteryLowFlag() { batteryLowFired = false; }

    /// Stops following the power sources. Power messages still arrive until the process ends.
    void stop() { subscription_ = nullptr; }

    /// Whether the machine ran on battery when last checked.
    bool wasOnBattery = false;
    /// Whether the low-battery alert has been given during this discharge.
    bool batteryLowFired = false;

private:
    void takeStartingState();
    void wake();
    void checkCharge(const PowerSourceDescription& source);

    const Dependencies deps_;
    std::unique_ptr<PowerSources::Subscription> subscription_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
