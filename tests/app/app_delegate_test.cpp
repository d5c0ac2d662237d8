// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/app_delegate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

#include "app/program_control.h"
#include "sound/notifications.h"
#include "support/fake_desktop.h"
#include "support/fake_folder_source.h"
#include "support/fake_key_source.h"
#include "support/fake_lid_sensor_source.h"
#include "support/fake_microphone.h"
#include "support/fake_power_sources.h"
#include "support/fake_sleep_source.h"
#include "support/fake_sources.h"
#include "support/journal.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

/// A delegate with fake dependencies, on which the test can make each event happen.
class TheAppDelegate : public testing::Test {
protected:
    TheAppDelegate() {
        for (Noting* const fake : std::initializer_list<Noting*>{
                 &lid, &display, &keys, &output, &folders, &launches, &trash, &reachability, &usb,
                 &microphone, &system, &powerSources, &statusItem, &fileManager}) {
            fake->journal = &journal;
        }
        permission.answer(true);
        display.level = 0.5F;
        output.main = 0.5F;
        reachability.plugged = true;
        powerSources.source = {.isOnBattery = false, .charge = 80};
        for (SoundEvent& event : manager.events) {
            event.isEnabled = true;
        }
    }

    void launch() {
        delegate.emplace(
            AppDelegate::Dependencies{queue, queue, library.notifications, manager, fileManager,
                                      statusItem, windows, [this] { terminations++; }},
            AppDelegate::Sources{lid,
                                 display,
                                 keys,
                                 keys,
                                 output,
                                 folders,
                                 {{.path = "/shots"}},
                                 launches,
                                 trash,
                                 reachability,
                                 usb,
                                 permission,
                                 system,
                                 powerSources});
        delegate->applicationDidFinishLaunching();
        lid.moveTo(45);
        queue.runPosted();
    }

    /// Makes every event that has a monitor happen once. Returns the events that were counted, in
    /// the table's order.
    std::string countedEvents() {
        for (SoundEvent& event : manager.events) {
            event.triggerCount = 0;
        }
        const std::function<void()> signals[] = {
            [this] { microphone.send(0.8F); },
            [this] { powerSources.change({{.isOnBattery = true, .charge = 80}}); },
            [this] { powerSources.change({{.isOnBattery = true, .charge = 10}}); },
            [this] { powerSources.change({{.isOnBattery = false, .charge = 80}}); },
            [this] { lid.moveTo(manager.findEvent("lid_angle")->threshold > 45 ? 179 : 10); },
            [this] { display.level = 0.6F; },
            [this] { display.level = 0.5F; },
            [this] { keys.press(0); },
            [this] { output.main = 0.6F; },
            [this] { output.main = 0.5F; },
            [this] { folders.add("/shots", "Screenshot " + std::to_string(++shots) + ".png"); },
            [this] { launches.launch(); },
            [this] { trash.change(1); },
            [this] { trash.change(-1); },
            [this] { reachability.plugged = false; },
            [this] { reachability.plugged = true; },
            [this] { usb.plug(); },
            [this] { system.send(kIOPMSystemWillSleep); },
            [this] { system.send(kIOPMSystemHasPoweredOn); },
        };
        for (const auto& signal : signals) {
            signal();
            queue.advance(Seconds{3});
        }
        std::string ids;
        for (const SoundEvent& event : manager.events) {
            ids += event.triggerCount == 0
                       ? ""
                       : event.id + "*" + std::to_string(event.triggerCount) + " ";
        }
        return ids;
    }
    void enable(std::initializer_list<const char*> ids, bool on) {
        for (const char* const id : ids) {
            manager.findEvent(id)->isEnabled = on;
        }
    }

    /// What a control of the program needs. Each source reports the id of its event.
    ProgramControl::Dependencies controlled() {
        return {.sounds = manager,
                .delegate = *delegate,
                .notifications = library.notifications,
                .clock = queue,
                .report = [](std::string_view event) {
                    return SourceReport{.mechanism = std::string(event)};
                }};
    }

    SoundLibrary library;
    SoundManager& manager = *library;
    VirtualMainQueue& queue = library.queue;
    FakeFileManagerSounds& fileManager = library.fileManager;
    FakeLidSensorSource lid;
    FakeBrightnessSource display;
    FakeKeySource keys;
    FakeOutputVolumeSource output;
    FakeFolderSource folders;
    FakeAppLaunchSource launches;
    FakeTrashSource trash;
    FakeReachabilitySource reachability;
    FakeUsbArrivalSource usb;
    Journal journal;
    FakeMicrophone microphone;
    MicrophonePermission permission{microphone, library.defaults};
    FakeSleepSource system;
    FakePowerSources powerSources;
    FakeStatusItem statusItem;
    FakeWindows windows;
    int terminations = 0;
    int shots = 0;
    std::optional<AppDelegate> delegate;
};

TEST_F(TheAppDelegate, PlaysEachMonitorsEventsFromLaunchToQuit) {
    manager.findEvent("lid_angle")->threshold = 20;
    launch();
    EXPECT_EQ(
        countedEvents(),
        "slap*1 lid_open*1 lid_close*1 lid_angle*1 charger_connect*1 charger_disconnect*1 "
        "brightness_up*1 brightness_down*1 key_press*1 volume_up*1 volume_down*1 screenshot*1 app_launch*1 "
        "trash_empty*1 trash_add*1 network_up*1 network_down*1 battery_low*1 usb_connect*1 ");
    delegate->applicationWillTerminate();
    EXPECT_FALSE(keys.tapExists());
    // The system's power messages still arrive until the process ends.
    EXPECT_EQ(countedEvents(), "lid_open*1 lid_close*1 ");
    EXPECT_FALSE(lid.isOpen());
    EXPECT_FALSE(usb.isOpen());
    EXPECT_EQ(launches.observers(), 0U);
}

TEST_F(TheAppDelegate, StartsTheIconFirstAndStopsTheMicrophoneFirst) {
    journal.take();
    launch();
    EXPECT_EQ(journal.take(),
              "menu sleep microphone power display lid keys output folders launches trash finder- "
              "network usb");
    delegate->applicationWillTerminate();
    EXPECT_EQ(journal.take(),
              "-engine -tap -keys -lid -folders -launches -network -usb -power finder+");
}

TEST_F(TheAppDelegate, RestartsTheMicrophoneAfterAWakeAndTheKeyboardOnlyIfItsEventIsOn) {
    launch();
    for (const bool keysOn : {true, false}) {
        enable({"key_press"}, keysOn);
        journal.take();
        system.send(kIOPMSystemHasPoweredOn);
        queue.advance(Seconds{0.49});
        EXPECT_EQ(journal.take().find("microphone"), std::string::npos);
        queue.advance(Seconds{0.02});
        const std::string noted = journal.take();
        EXPECT_NE(noted.find("-engine -tap microphone"), std::string::npos);
        EXPECT_EQ(noted.find("-keys keys") != std::string::npos, keysOn);
    }
}

TEST_F(TheAppDelegate, AsksForTheMicrophoneWhereThereIsAWindowOrATrayUntilThereIsAnAnswer) {
    const auto forget = [this] {
        library.defaults.setObject(MicrophonePermission::kAllowedKey, std::nullopt);
    };
    forget();
    launch();
    EXPECT_EQ(microphone.enginesMade, 0U);
    EXPECT_EQ(windows.log, "") << "there is no place to ask";
    delegate->openDashboard();
    delegate->openHelp();
    EXPECT_EQ(
        std::exchange(windows.log, ""),
        "dashboard made, dashboard shown, question made, question shown, help made, help shown, ");
    std::exchange(windows.answer, nullptr)(true);
    queue.runPosted();
    EXPECT_EQ(microphone.listening(), 1U);

    launch();
    EXPECT_EQ(microphone.listening(), 1U);
    statusItem.onShown();
    EXPECT_EQ(windows.log, "") << "the answer is stored";
    delegate->allowMicrophone(false);
    EXPECT_EQ(microphone.listening(), 0U);
    delegate->allowMicrophone(true);
    EXPECT_EQ(microphone.listening(), 1U);

    forget();
    launch();
    statusItem.onShown();
    EXPECT_EQ(windows.log, "question made, question shown, ");
    windows.answer(true);
    delegate->allowMicrophone(false);
    queue.runPosted();
    EXPECT_EQ(microphone.listening(), 0U) << "the last answer counts";
}

TEST_F(TheAppDelegate, AppliesANewSensitivityToTheNextKnock) {
    const auto knocks = [this](const char* sensitivity, float peak) {
        launch();
        statusItem.choose(sensitivity);
        const auto before = manager.findEvent("slap")->triggerCount;
        microphone.send(peak);
        queue.runPosted();
        return manager.findEvent("slap")->triggerCount > before;
    };
    EXPECT_FALSE(knocks("Low", 0.9F));
    EXPECT_TRUE(knocks("Low", 0.91F));
    EXPECT_FALSE(knocks("Medium", 0.75F));
    EXPECT_TRUE(knocks("Medium", 0.76F));
    EXPECT_FALSE(knocks("High", 0.55F));
    EXPECT_TRUE(knocks("High", 0.56F));
}

TEST_F(TheAppDelegate,
       LeavesThreeMonitorsStoppedWhoseEventsAreOffAtLaunchWhateverIsSwitchedOnLater) {
    enable({"key_press", "volume_up", "volume_down", "screenshot", "app_launch", "usb_connect",
            "lid_angle"},
           false);
    launch();
    enable({"key_press", "volume_up", "volume_down", "screenshot", "app_launch", "usb_connect",
            "lid_angle"},
           true);
    EXPECT_EQ(
        countedEvents(),
        "slap*1 lid_open*1 lid_close*1 lid_angle*1 charger_connect*1 charger_disconnect*1 "
        "brightness_up*1 brightness_down*1 app_launch*1 trash_empty*1 trash_add*1 network_up*1 network_down*1 "
        "battery_low*1 usb_connect*1 ");
    delegate->applicationWillTerminate();
}

TEST_F(TheAppDelegate, ReportsBothVolumeEventsIfOneIsOnAtLaunch) {
    enable({"volume_up"}, false);
    launch();
    EXPECT_EQ(countedEvents().find("volume_up"), std::string::npos);
    enable({"volume_up"}, true);
    EXPECT_NE(countedEvents().find("volume_up*1 volume_down*1"), std::string::npos);
}

TEST_F(TheAppDelegate, MarksTheChosenSensitivityUntilTheNextLaunch) {
    for (const char* const chosen : {"Low", "High"}) {
        launch();
        EXPECT_EQ(statusItem.marked(), "Medium ");
        statusItem.choose(chosen);
        EXPECT_EQ(statusItem.marked(), std::string(chosen) + " ");
    }
}

TEST_F(TheAppDelegate, MakesEachWindowAtItsFirstUseAndReusesIt) {
    launch();
    EXPECT_EQ(windows.log, "");
    statusItem.choose("Help & Troubleshooting");
    statusItem.onActivate();
    statusItem.choose("Open Dashboard");
    EXPECT_TRUE(delegate->applicationShouldHandleReopen());
    delegate->openHelp();
    EXPECT_EQ(
        windows.log,
        "help made, help shown, dashboard made, dashboard shown, dashboard shown, dashboard shown, "
        "help shown, ");
}

TEST_F(TheAppDelegate, QuitsThroughTheMainLoop) {
    launch();
    statusItem.choose("Quit");
    EXPECT_EQ(terminations, 1);
    EXPECT_TRUE(usb.isOpen());
}

TEST_F(TheAppDelegate, PlaysNothingAfterItsDestruction) {
    launch();
    trash.countsAtOnce = false;
    trash.change(1);
    queue.advance(Seconds{0.5});
    folders.add("/shots", "Screenshot.png");
    system.send(kIOPMSystemHasPoweredOn);
    microphone.send(0.8F);
    usb.plug();
    lid.moveTo(120);
    delegate.reset();
    EXPECT_EQ(microphone.taps(), 0U);
    trash.answer(1);
    EXPECT_EQ(countedEvents(), "");
}

TEST_F(TheAppDelegate, SilencesTheFileManagerWhileEitherTrashEventIsOn) {
    struct Case {
        bool empty;
        bool add;
        bool fileManagerMaySound;
    };
    for (const Case& c : {Case{true, true, false}, Case{true, false, false},
                          Case{false, true, false}, Case{false, false, true}}) {
        fileManager.calls.clear();
        enable({"trash_empty"}, c.empty);
        enable({"trash_add"}, c.add);
        launch();
        delegate->applicationWillTerminate();
        EXPECT_EQ(fileManager.calls, (std::vector<bool>{c.fileManagerMaySound, true}))
            << c.empty << c.add;
    }
}

TEST(TheSensitivity, IsMediumForAnUnknownName) {
    EXPECT_EQ(slapThresholdFor("high"), 0.75F);
    EXPECT_EQ(slapThresholdFor(""), 0.75F);
}

TEST_F(TheAppDelegate, KnowsWhichEventsItCannotHearBeforeTheNextStart) {
    enable({"volume_up", "screenshot"}, false);
    launch();
    enable({"screenshot"}, true);
    EXPECT_TRUE(delegate->waitsForRestart("screenshot"));
    EXPECT_FALSE(delegate->waitsForRestart("volume_up")) << "volume_down was on";
    EXPECT_FALSE(delegate->waitsForRestart("slap"));
}

TEST_F(TheAppDelegate, ObeysOtherProgramsAtOnce) {
    enable({"key_press", "volume_up", "volume_down", "screenshot", "slap"}, false);
    launch();
    ProgramControl control(controlled());
    int redrawn = 0;
    const auto redrawing = library.notifications.observe(
        kSettingsDidChange, [&redrawn](const Notification& /*settings*/) { ++redrawn; });
    for (const char* const event : {"Key Press", "volume_down", "SCREENSHOT", "single-knock"}) {
        EXPECT_EQ(control.setEnabled(event, true), std::nullopt) << event;
    }
    EXPECT_EQ(redrawn, 4);
    const std::string heard = countedEvents();
    for (const char* const event : {"key_press*1", "volume_down*1", "screenshot*1", "slap*1"}) {
        EXPECT_NE(heard.find(event), std::string::npos) << event;
    }
    EXPECT_EQ(control.setEnabled("key_press", false), std::nullopt);
    EXPECT_FALSE(keys.tapExists());
    EXPECT_EQ(control.setEnabled("lid_angle", false),
              "\"Lid at Angle\" is locked: this machine has no sensor in its hinge.");
    EXPECT_EQ(control.play("lid"),
              "There is no event \"lid\". Did you mean lid_open, lid_close or lid_angle?");
}

TEST_F(TheAppDelegate, TellsOtherProgramsWhatPlaysAndLetsThemSelectAThemeOrMuteIt) {
    launch();
    manager.createCustomTheme("Night");
    manager.setPath("/own.wav", "slap");
    ProgramControl control(controlled());
    std::string changes;
    control.onThemeChanged = [&changes] { changes += "theme "; };
    control.onMuteChanged = [&changes] { changes += "mute "; };
    const auto state = [&] {
        RemoteState now;
        control.readState(now);
        return now.theme + " " + now.events.at(0).sound + " " + now.events.at(1).sound;
    };
    EXPECT_EQ(state(), "Night /own.wav Basso");
    for (const auto& [typed, shown] :
         {std::pair{"Sci-Fi", "scifi scifi scifi"}, std::pair{"traditional", "trad trad trad"},
          std::pair{"night", "Night /own.wav Basso"}, std::pair{"8bit", "8bit 8bit 8bit"},
          std::pair{"A", "Night /own.wav Basso"}}) {
        EXPECT_EQ(control.setTheme(typed), std::nullopt) << typed;
        EXPECT_EQ(state(), shown);
    }
    EXPECT_EQ(control.setTheme("nite"),
              "There is no theme \"nite\". Did you mean Night, 8bit or system?");
    queue.runPosted();
    EXPECT_EQ(std::exchange(changes, ""), "theme theme theme theme theme theme ");
    bool isMuted = false;
    control.toggleMuted(isMuted);
    control.setMuted(true);
    EXPECT_TRUE(isMuted && manager.isMuted() && statusItem.showsMute);
    EXPECT_EQ(changes, "mute ");
    statusItem.choose("Unmute");
    EXPECT_FALSE(manager.isMuted() || statusItem.showsMute);
    EXPECT_EQ(changes, "mute mute ");
}

TEST_F(TheAppDelegate, SaysWhenEachEventWasHeardAndWhatTheUserMustDoToHearIt) {
    enable({"screenshot", "key_press"}, false);
    launch();
    ProgramControl control(controlled());
    enable({"screenshot", "key_press"}, true);
    manager.findEvent("usb_connect")->volume = 0;
    control.setMuted(true);
    usb.plug();
    queue.advance(Seconds{7});
    std::vector<RemoteCheck> checks;
    control.check(checks);
    ASSERT_EQ(checks.size(), 20U);
    std::string lacks;
    for (const RemoteCheck& check : checks) {
        EXPECT_EQ(check.source.mechanism, check.id);
        EXPECT_EQ(check.secondsAgo.has_value(), check.id == "usb_connect") << check.id;
        lacks += check.source.missing.empty() ? "" : check.id + ": " + check.source.advice + "\n";
    }
    EXPECT_NEAR(*checks.back().secondsAgo, 7, 0.1);
    EXPECT_EQ(lacks,
              "sound_output: Run: chimewerk --unmute\n"
              "key_press: Run: chimewerk --enable key_press\n"
              "screenshot: Run: chimewerk --enable screenshot\n"
              "usb_connect: Raise it in the dashboard.\n");
    control.setMuted(false);
    control.setEnabled("screenshot", true);
    control.setEnabled("key_press", true);
    control.check(checks);
    EXPECT_EQ(std::ranges::count_if(
                  checks, [](const RemoteCheck& check) { return !check.source.missing.empty(); }),
              1);
}

}  // namespace
}  // namespace chimewerk
