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

/// Plays what the machine's power state gives rise to: sleep and wake, which stand for closing and opening
/// the lid, the charger, and the battery running low. After a wake it also has the microphone and the
/// keyboard listened to anew. Main thread only.
class PowerEvents {
public:
    /// All of it outlives the object.
    struct Dependencies {
        MainQueue& queue;
        SoundManager& sounds;
        SleepSource& system;
        PowerSources& powerSources;
        /// Builds the microphone's listening anew.
        std::function<void()> restartAudio;
        /// Builds the keyboard's listening anew; called only while "key_press" is on.
        std::function<void()> restartKeyboardMonitor;
    };

    explicit PowerEvents(Dependencies dependencies) : deps_(std::move(dependencies)) {}

    /// Registers for the system's power messages, until the process ends. Where there are none, sleep and
    /// wake raise no events. Called once.
    void setupLidDetection();

    /// Handles one power message. Going to sleep is answered 0.35 s later, so that the sound has begun; a
    /// wake needs no answer; every other message is answered at once.
    void handleSleepMessage(std::uint32_t messageType, std::intptr_t argument);

    /// Takes the present state of the charger as the one to start from, as soon as it is known, and follows
    /// it from then on. Plays nothing and does not look at the charge. Called once before `stop()`.
    void setupPowerMonitoring();

    /// Looks at the first power source and plays what has happened to it.
    void powerChanged();

    /// Lets a low battery be told again during the present discharge: its threshold has been changed.
    void resetBatteryLowFlag() { batteryLowFired = false; }

    /// Follows the power sources no longer. The system's power messages are heard until the process ends.
    void stop() { subscription_ = nullptr; }

    /// Whether the machine ran on battery at the last look.
    bool wasOnBattery = false;
    /// Whether the low battery has been told of during this discharge.
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
