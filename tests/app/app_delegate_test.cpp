#include "app/app_delegate.h"

#include <gtest/gtest.h>

#include "support/fake_defaults_store.h"
#include "support/fake_file_manager_sounds.h"
#include "support/fake_sound_service.h"
#include "support/fake_trash_source.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

class TheAppDelegate : public testing::Test {
protected:
    void trashAndEmpty() {
        trash.change(1);
        queue.advance(Seconds{2});
        trash.change(-1);
        queue.advance(Seconds{2});
    }
    std::string counts() const {
        return std::to_string(manager.findEvent("trash_add")->triggerCount) + "/" +
               std::to_string(manager.findEvent("trash_empty")->triggerCount);
    }

    VirtualMainQueue queue;
    NotificationCenter notifications;
    FakeSoundService sounds;
    FakeDefaultsStore defaults;
    FakeFileManagerSounds fileManager;
    FakeTrashSource trash;
    SoundManager manager{"", {queue, notifications, sounds, sounds, defaults, fileManager}};
    AppDelegate delegate{{queue, queue, manager, fileManager, trash}};
};

TEST_F(TheAppDelegate, PlaysTheTrashEventsFromLaunchToQuit) {
    trashAndEmpty();
    EXPECT_EQ(counts(), "0/0");
    delegate.applicationDidFinishLaunching();
    trashAndEmpty();
    EXPECT_EQ(counts(), "1/1");
    delegate.applicationWillTerminate();
    trashAndEmpty();
    EXPECT_EQ(counts(), "1/1");
}

TEST_F(TheAppDelegate, SilencesTheFileManagerWhileEitherTrashEventIsOn) {
    struct Case {
        bool empty;
        bool add;
        bool fileManagerMaySound;
    };
    for (const Case& c : {Case{true, true, false}, Case{true, false, false}, Case{false, true, false},
                          Case{false, false, true}}) {
        fileManager.calls.clear();
        manager.findEvent("trash_empty")->isEnabled = c.empty;
        manager.findEvent("trash_add")->isEnabled = c.add;
        delegate.applicationDidFinishLaunching();
        delegate.applicationWillTerminate();
        EXPECT_EQ(fileManager.calls, (std::vector<bool>{c.fileManagerMaySound, true})) << c.empty << c.add;
    }
}

}  // namespace
}  // namespace chimewerk
