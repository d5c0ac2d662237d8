#pragma once

#include "monitors/trash_monitor.h"
#include "platform/clock.h"
#include "platform/file_manager_sounds.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// Owns the monitors, wires each to the sound library, and starts and stops them in a fixed order. Main thread only.
class AppDelegate {
public:
    /// What the delegate and its monitors need of their surroundings; all of it outlives the delegate.
    struct Surroundings {
        MainQueue& queue;
        const Clock& clock;
        SoundManager& sounds;
        FileManagerSounds& fileManagerSounds;
        TrashSource& trash;
    };

    explicit AppDelegate(const Surroundings& surroundings);

    /// Runs the start-up sequence. Called once, when the main loop is about to run.
    void applicationDidFinishLaunching();

    /// Stops everything that was started. Called once, when the main loop has ended.
    void applicationWillTerminate();

private:
    void startApp();
    void setupTrashMonitoring();
    /// A callback that plays this event, and does nothing once the delegate is gone.
    std::function<void()> playing(const char* eventId);

    FileManagerSounds& fileManagerSounds_;
    SoundManager& sounds_;
    TrashMonitor trashMonitor_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
