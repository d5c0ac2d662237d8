#include "app/app_delegate.h"

namespace chimewerk {

AppDelegate::AppDelegate(const Surroundings& surroundings)
    : fileManagerSounds_(surroundings.fileManagerSounds),
      sounds_(surroundings.sounds),
      trashMonitor_(surroundings.queue, surroundings.clock, surroundings.trash) {}

void AppDelegate::applicationDidFinishLaunching() { startApp(); }

void AppDelegate::startApp() { setupTrashMonitoring(); }

void AppDelegate::setupTrashMonitoring() {
    trashMonitor_.onAdd = playing("trash_add");
    trashMonitor_.onEmpty = playing("trash_empty");
    trashMonitor_.start();
    fileManagerSounds_.setFinderTrashSoundEnabled(!sounds_.isAnyTrashEventEnabled());
}

void AppDelegate::applicationWillTerminate() {
    trashMonitor_.stop();
    fileManagerSounds_.setFinderTrashSoundEnabled(true);
}

std::function<void()> AppDelegate::playing(const char* eventId) {
    return lifeline_.guard([this, eventId] { sounds_.play(eventId); });
}

}  // namespace chimewerk
