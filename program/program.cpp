// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The composition root: makes the parts, connects them and runs the main loop. The parts know each
// other only through interfaces.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_delegate.h"
#include "app/first_run.h"
#include "app/microphone_permission.h"
#include "app/permission_reminder.h"
#include "app/program_control.h"
#include "app/quiet_parts.h"
#include "app/remote_commands.h"
#include "app/source_reports.h"
#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_output_volume_source.h"
#include "linux/base/epoll_main_queue.h"
#include "linux/base/inotify_folder_source.h"
#include "linux/base/module.h"
#include "linux/base/posix_file_system.h"
#include "linux/base/program_folders.h"
#include "linux/base/system_clock.h"
#include "linux/base/termination_signals.h"
#include "linux/base/worker.h"
#include "linux/decoding/decoder.h"
#include "linux/desktop/desktop_notification.h"
#include "linux/desktop/null_file_manager_sounds.h"
#include "linux/desktop/plasma_trash_sound.h"
#include "linux/desktop/screenshot_places.h"
#include "linux/desktop/session_environment.h"
#include "linux/desktop/session_idle_time.h"
#include "linux/desktop/xdg_folders.h"
#include "linux/desktop/xdg_trash_source.h"
#include "linux/devices/sysfs_backlight_source.h"
#include "linux/devices/udev_usb_arrival_source.h"
#include "linux/devices/user_brightness_source.h"
#include "linux/instance/remote_control_client.h"
#include "linux/instance/remote_control_service.h"
#include "linux/instance/single_instance.h"
#include "linux/keys/desktop_key_source.h"
#include "linux/keys/xdg_permission_page.h"
#include "linux/launches/desktop_app_launch_source.h"
#include "linux/lid/lid_sensor_table.h"
#include "linux/lid/linux_hardware_query.h"
#include "linux/microphone/pulse_microphone.h"
#include "linux/network/rtnetlink_reachability_source.h"
#include "linux/playback/pulse_player.h"
#include "linux/playback/pulse_sound_service.h"
#include "linux/power/logind_sleep_source.h"
#include "linux/power/upower_power_sources.h"
#include "linux/storage/json_defaults_store.h"
#include "linux/storage/xdg_sound_folder.h"
#include "platform/notification_center.h"
#include "program/loaded_windows.h"
#include "program/program_module.h"
#include "sound/sound_manager.h"
#include "ui/toolkit/qt_program.h"

namespace chimewerk {
namespace {

/// Ends the main loop, and then the process, whatever it waits for: a sound may lie on a network
/// file system that no longer answers.
void quit() {
    TerminationSignals::endWithin(kQuitPatience);
    QtProgram::quit();
}

void reportNotAnswering() {
    constexpr const char* kSummary = "Chimewerk is running, but does not answer.";
    constexpr const char* kAdvice =
        "If it stays so, end it in the system monitor and start it again.";
    std::fprintf(stderr, "%s %s\n", kSummary, kAdvice);
    showDesktopNotification(CHIMEWERK_ID, kSummary, kAdvice);
}

/// Says that the program runs on a desktop without a tray. Waits for the desktop.
void tellWhereThereIsNoTray(const std::stop_token& /*stop*/) {
    showDesktopNotification(CHIMEWERK_ID, "Chimewerk is running",
                            "This desktop has no tray for its icon. Start Chimewerk again to open "
                            "its dashboard.");
}

void carryOut(AppDelegate& delegate, const std::string& action) {
    if (action == SingleInstance::kOpenDashboard) {
        delegate.openDashboard();
    } else if (action == SingleInstance::kOpenHelp) {
        delegate.openHelp();
    } else if (action == SingleInstance::kAllowMicrophone ||
               action == SingleInstance::kDenyMicrophone) {
        delegate.allowMicrophone(action == SingleInstance::kAllowMicrophone);
    } else if (action == SingleInstance::kQuit) {
        quit();
    }
}

/// In place of a source whose module is missing.
class MissingKeySource final : public ReportingKeySource {
public:
    explicit MissingKeySource(const std::string& error)
        : report_{.mechanism = "none",
                  .missing = "A part of the program is missing: " + error + "."} {}

    bool trusted() override { return false; }
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks /*callbacks*/) override { return nullptr; }
    SourceReport report() override { return report_; }

private:
    const SourceReport report_;
};

using EvdevModuleFunction = ReportingKeySource* (*)(EpollMainQueue& queue,
                                                    const std::string& waylandDisplay);

/// Loads the source that reads event devices.
std::unique_ptr<ReportingKeySource> loadEventDevices(Module& module, EpollMainQueue& queue,
                                                     const std::string& waylandDisplay) {
    if (const auto make = module.function<EvdevModuleFunction>(CHIMEWERK_EVDEV_FUNCTION_NAME)) {
        return std::unique_ptr<ReportingKeySource>(make(queue, waylandDisplay));
    }
    return std::make_unique<MissingKeySource>(module.error());
}

/// The real sources, outputs and stores.
struct Machine {
    explicit Machine(EpollMainQueue& mainQueue) : queue(mainQueue) {}

    EpollMainQueue& queue;
    const SystemClock clock;
    const PosixFileSystem files;
    const ProgramFolders folders = findProgramFolders();
    Module evdevModule{folders.modules + "/chimewerk-evdev.so"};
    Module windowsModule{folders.modules + "/chimewerk-windows.so"};
    const bool supportsLidAngle = LinuxHardwareQuery().supportsLidAngle();
    PlasmaTrashSound fileManagerSounds{queue};

    const Decoders decoders{folders.modules};
    PulseConnection soundServer;
    PulsePlayer player{soundServer};
    PulseSoundService soundService{decoders, player, folders.sounds + "/alerts"};

    const SessionEnvironment session = SessionEnvironment::ofThisProcess();
    LidSensorTable lidSensor{queue, LidSensorTable::rows(queue)};
    SysfsBacklightSource display{queue};
    SessionIdleTime idleTime{queue, session};
    UserBrightnessSource brightness{display,
                                    [this](auto answer) { idleTime.ask(std::move(answer)); }};
    DesktopKeySource keys{queue, session, [this] {
                              return loadEventDevices(evdevModule, queue, session.waylandDisplay);
                          }};
    XdgPermissionPage keyPermissionPage{queue, folders.pages + "/keyboard-permission.html"};
    PulseOutputVolumeSource output{queue, soundServer};
    InotifyFolderSource watchedFolders{queue};
    const std::vector<ScreenshotFolder> screenshotPlaces = screenshotFolders();
    DesktopAppLaunchSource launches{queue, session};
    XdgTrashSource trash{queue, xdgDataHome()};
    RtnetlinkReachabilitySource reachability{queue};
    UdevUsbArrivalSource usbDevices{queue};
    PulseMicrophone recorder{soundServer};
    LogindSleepSource sleepSource{queue};
    UPowerPowerSources powerSources{queue};

    JsonDefaultsStore defaults{queue, xdgConfigHome()};
    MicrophonePermission microphone{recorder, defaults};
    PermissionReminder permissionReminder{keyPermissionPage, keys, defaults};
    XdgSoundFolder soundFolder{queue, decoders, xdgDataHome()};
    Worker notifier;
};

SoundManager::Dependencies soundsOn(Machine& machine, SoundService& service,
                                    NotificationCenter& notifications,
                                    FileManagerSounds& fileManagerSounds) {
    return {.queue = machine.queue,
            .notifications = notifications,
            .sounds = service,
            .files = machine.files,
            .defaults = machine.defaults,
            .fileManagerSounds = fileManagerSounds};
}

AppDelegate::Sources sourcesOf(Machine& machine, PermissionPage& keyPermissionPage) {
    return {.lidSensor = machine.lidSensor,
            .display = machine.brightness,
            .keys = machine.keys,
            .keyPermissionPage = keyPermissionPage,
            .output = machine.output,
            .folders = machine.watchedFolders,
            .screenshotFolders = machine.screenshotPlaces,
            .launches = machine.launches,
            .trash = machine.trash,
            .reachability = machine.reachability,
            .usbDevices = machine.usbDevices,
            .microphone = machine.microphone,
            .sleepSource = machine.sleepSource,
            .powerSources = machine.powerSources};
}

/// Returns what reports on the sources of the events.
std::function<SourceReport(std::string_view eventId)> reportsOf(Machine& machine) {
    const SourceReporters reporters{.lidSensor = machine.lidSensor,
                                    .display = machine.display,
                                    .keys = machine.keys,
                                    .output = machine.output,
                                    .launches = machine.launches,
                                    .trash = machine.trash,
                                    .reachability = machine.reachability,
                                    .usbDevices = machine.usbDevices,
                                    .recorder = machine.recorder,
                                    .sleepSource = machine.sleepSource,
                                    .powerSources = machine.powerSources,
                                    .microphone = machine.microphone,
                                    .screenshotFolders = machine.screenshotPlaces};
    return [reporters](std::string_view eventId) { return reporters.of(eventId); };
}

ProgramControl::Dependencies controlOf(Machine& machine, SoundManager& sounds,
                                       AppDelegate& delegate, NotificationCenter& notifications) {
    return {.sounds = sounds,
            .delegate = delegate,
            .notifications = notifications,
            .clock = machine.clock,
            .report = reportsOf(machine),
            .supportsLidAngle = machine.supportsLidAngle};
}

/// The rules and windows of the program.
struct Program {
    Program(Machine& itsMachine, StatusItem& icon) : machine(itsMachine), statusItem(icon) {}

    Machine& machine;
    StatusItem& statusItem;
    NotificationCenter notifications;
    SoundManager sounds{machine.folders.sounds, soundsOn(machine, machine.soundService,
                                                         notifications, machine.fileManagerSounds)};
    LoadedWindows windows{machine.windowsModule,
                          {.sounds = sounds,
                           .notifications = notifications,
                           .defaults = machine.defaults,
                           .files = machine.files,
                           .resourceFolder = machine.folders.sounds,
                           .soundFolder = machine.soundFolder,
                           .keys = machine.keys,
                           .keyPermissionPage = machine.keyPermissionPage,
                           .isAppleSilicon = machine.supportsLidAngle,
                           .report = reportsOf(machine)},
                          machine.folders.pages + "/users.md"};
    AppDelegate delegate{{.queue = machine.queue,
                          .clock = machine.clock,
                          .notifications = notifications,
                          .sounds = sounds,
                          .fileManagerSounds = machine.fileManagerSounds,
                          .statusItem = statusItem,
                          .windows = windows,
                          .terminate = quit},
                         sourcesOf(machine, machine.permissionReminder)};
    FirstRun firstRun{machine.queue,
                      machine.defaults,
                      {.openDashboard = [this] { delegate.openDashboard(); },
                       .isInTray = [this] { return delegate.isInTray(); },
                       .tell = [this] { machine.notifier.post(tellWhereThereIsNoTray); }}};
    ProgramControl control{controlOf(machine, sounds, delegate, notifications)};

    void serve(RemoteControlService& service) {
        control.onThemeChanged = [&service] { service.announceTheme(); };
        control.onMuteChanged = [&service] { service.announceMute(); };
        service.begin(control);
    }
};

/// Starts the program without icon, windows and sounds, and waits until its sources have found what
/// there is. Then carries the command out.
CommandResult carryOutAlone(const CommandLine& line) {
    constexpr Seconds kSearch{1.5};
    // The toolkit does this in the program; screenshot folders have names in the user's language.
    std::setlocale(LC_CTYPE, "");
    std::setlocale(LC_MESSAGES, "");
    EpollMainQueue queue;
    Machine machine(queue);
    NoStatusItem statusItem;
    NoWindows windows;
    NoPermissionPage permissionPage;
    NotificationCenter notifications;
    NoSounds noSounds;
    NullFileManagerSounds fileManagerSounds;
    SoundManager sounds(machine.folders.sounds,
                        soundsOn(machine, noSounds, notifications, fileManagerSounds));
    AppDelegate delegate({.queue = queue,
                          .clock = machine.clock,
                          .notifications = notifications,
                          .sounds = sounds,
                          .fileManagerSounds = fileManagerSounds,
                          .statusItem = statusItem,
                          .windows = windows,
                          .terminate = [] {}},
                         sourcesOf(machine, permissionPage));
    ProgramControl control(controlOf(machine, sounds, delegate, notifications));
    delegate.applicationDidFinishLaunching();
    machine.soundServer.open();
    queue.postAfter(kSearch, [&queue] { queue.quit(); });
    queue.run();
    CommandResult result =
        carryOutRemotely(line, control, {.isRunning = false, .home = homeFolder()});
    delegate.applicationWillTerminate();
    return result;
}

/// Asks the running program to carry this out.
int request(const CommandLine& line) {
    RemoteControlClient program(CHIMEWERK_ID);
    CommandResult result = carryOutRemotely(line, program, {.home = homeFolder()});
    if (program.foundNobody() && isCheck(line.command)) {
        result = carryOutAlone(line);
    }
    std::fputs(result.output.c_str(), stdout);
    std::fputs(result.errors.c_str(), stderr);
    return result.status;
}

void runProgram(const ProgramStart& start) {
    Machine machine(start.queue);
    start.toolkit.beforeSuddenEnd([&machine] {
        machine.fileManagerSounds.setFinderTrashSoundEnabled(true);
        machine.defaults.flush();
    });
    Program program(machine, start.statusItem);
    start.handlers = {
        .reopen = [&program] { program.delegate.applicationShouldHandleReopen(); },
        .carryOut = [&program](const std::string& action) { carryOut(program.delegate, action); }};
    program.serve(start.service);
    // Before the loop runs: in its first turn the tray's question for the menu is answered.
    program.delegate.applicationDidFinishLaunching();
    machine.permissionReminder.endStartUp();
    machine.soundServer.open();
    bool isStarted = false;
    start.queue.post([&start, &program, &isStarted] {
        carryOut(program.delegate, start.action);
        program.firstRun.begin(start.command == Command::run);
        isStarted = true;
    });
    start.toolkit.run([&isStarted] { return isStarted; });
    TerminationSignals::endWithin(kQuitPatience);
    program.delegate.applicationWillTerminate();
    machine.defaults.flush();
}

class LinuxProgram final : public ProgramModule {
public:
    void run(const ProgramStart& start) override { runProgram(start); }
    int request(const CommandLine& line) override { return chimewerk::request(line); }
    void storeMicrophoneAnswer(EpollMainQueue& queue, bool allowed) override {
        JsonDefaultsStore defaults(queue, xdgConfigHome());
        defaults.setObject(MicrophonePermission::kAllowedKey, DefaultsValue{allowed});
        defaults.flush();
    }
    void reportNotAnswering() override { chimewerk::reportNotAnswering(); }
};

}  // namespace
}  // namespace chimewerk

extern "C" chimewerk::ProgramModule* CHIMEWERK_PROGRAM_FUNCTION();

chimewerk::ProgramModule* CHIMEWERK_PROGRAM_FUNCTION() {
    static chimewerk::LinuxProgram program;
    return &program;
}
