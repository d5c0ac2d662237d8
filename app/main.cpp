// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The composition root: makes the parts, connects them and runs the main loop. The parts know each
// other only through interfaces.
#include <malloc.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_delegate.h"
#include "app/command_line.h"
#include "app/first_run.h"
#include "app/microphone_permission.h"
#include "app/permission_reminder.h"
#include "app/program_control.h"
#include "app/quiet_parts.h"
#include "app/remote_commands.h"
#include "app/source_reports.h"
#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_output_volume_source.h"
#include "linux/base/core_dumps.h"
#include "linux/base/descriptor_limit.h"
#include "linux/base/epoll_main_queue.h"
#include "linux/base/inotify_folder_source.h"
#include "linux/base/posix_file_system.h"
#include "linux/base/program_folders.h"
#include "linux/base/system_clock.h"
#include "linux/base/termination_signals.h"
#include "linux/base/worker.h"
#include "linux/decoding/decoder.h"
#include "linux/desktop/desktop_notification.h"
#include "linux/desktop/null_file_manager_sounds.h"
#include "linux/desktop/plasma_trash_sound.h"
#include "linux/desktop/remote_control_client.h"
#include "linux/desktop/remote_control_service.h"
#include "linux/desktop/screenshot_places.h"
#include "linux/desktop/session_environment.h"
#include "linux/desktop/session_idle_time.h"
#include "linux/desktop/single_instance.h"
#include "linux/desktop/xdg_folders.h"
#include "linux/desktop/xdg_trash_source.h"
#include "linux/devices/sysfs_backlight_source.h"
#include "linux/devices/udev_usb_arrival_source.h"
#include "linux/devices/user_brightness_source.h"
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
#include "sound/sound_manager.h"
#include "ui/qt_program.h"
#include "ui/qt_windows.h"
#include "ui/tray/qt_status_item.h"

namespace chimewerk {
namespace {

/// Returns the action to ask of an instance that runs already; empty to show its dashboard.
std::string actionFor(Command command) {
    switch (command) {
        case Command::openDashboard:
            return SingleInstance::kOpenDashboard;
        case Command::openHelp:
            return SingleInstance::kOpenHelp;
        case Command::allowMicrophone:
            return SingleInstance::kAllowMicrophone;
        case Command::denyMicrophone:
            return SingleInstance::kDenyMicrophone;
        case Command::quit:
            return SingleInstance::kQuit;
        case Command::background:
            return SingleInstance::kKeepQuiet;
        default:
            return {};
    }
}

/// How long a quit may take. The next launch waits a little longer for the name.
constexpr Seconds kQuitPatience{4};

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

/// Returns the callbacks for later launches. `running` and what the service needs must be set before
/// the queue runs.
SingleInstance::Callbacks laterLaunches(AppDelegate*& running, RemoteControlService& service) {
    return {.onActivate =
                [&running](const std::string& token) {
                    QtProgram::expectActivation(token);
                    running->applicationShouldHandleReopen();
                },
            .onAction =
                [&running](const std::string& action, const std::string& token) {
                    QtProgram::expectActivation(token);
                    carryOut(*running, action);
                },
            .addInterfaces = [&service](sd_bus* bus,
                                        const std::string& path) { service.addTo(bus, path); }};
}

/// The real sources, outputs and stores.
struct Machine {
    explicit Machine(EpollMainQueue& mainQueue) : queue(mainQueue) {}

    EpollMainQueue& queue;
    const SystemClock clock;
    const PosixFileSystem files;
    const ProgramFolders folders = findProgramFolders();
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
    DesktopKeySource keys{queue, session};
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
    QtWindows windows{{.sounds = sounds,
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

/// Stores the user's answer for the next start.
void storeMicrophoneAnswer(EpollMainQueue& queue, bool allowed) {
    JsonDefaultsStore defaults(queue, xdgConfigHome());
    defaults.setObject(MicrophonePermission::kAllowedKey, DefaultsValue{allowed});
    defaults.flush();
}

/// Runs the program. If an instance runs already, passes `command` on to it instead.
int run(int& argumentCount, char** arguments, Command command) {
    forbidCoreDumps();
    // A heap of its own for each of the threads would take 40 KiB more and speed up nothing.
    mallopt(M_ARENA_MAX, 1);
    if (const auto limit = raiseDescriptorLimit(); limit < kNeededDescriptors) {
        std::fprintf(stderr,
                     "chimewerk: needs %lu open files, but only %lu are allowed; see 'ulimit -n'\n",
                     kNeededDescriptors, limit);
        return EXIT_FAILURE;
    }
    EpollMainQueue queue;
    const TerminationSignals signals(queue, kQuitPatience, QtProgram::quit);
    AppDelegate* running = nullptr;
    RemoteControlService service(queue);
    SingleInstance instance(queue, CHIMEWERK_ID, laterLaunches(running, service));
    const std::string action = actionFor(command);
    const auto outcome = instance.claim(LaunchRequest::ofThisProcess(action));
    if (outcome == SingleInstance::Outcome::notAnswering) {
        reportNotAnswering();
        return EXIT_FAILURE;
    }
    if (outcome == SingleInstance::Outcome::alreadyRunning || command == Command::quit) {
        return 0;
    }
    if (command == Command::allowMicrophone || command == Command::denyMicrophone) {
        storeMicrophoneAnswer(queue, command == Command::allowMicrophone);
        return 0;
    }

    QtProgram toolkit(argumentCount, arguments, CHIMEWERK_ID);
    // The tray answers while the parts are made, and the queue begins with its answer. So the icon
    // does not wait for the rest of the start.
    QtStatusItem statusItem(
        [&toolkit, &queue] { toolkit.attach(queue.descriptor(), [&queue] { queue.dispatch(); }); });

    Machine machine(queue);
    toolkit.beforeSuddenEnd([&machine] {
        machine.fileManagerSounds.setFinderTrashSoundEnabled(true);
        machine.defaults.flush();
    });
    Program program(machine, statusItem);
    running = &program.delegate;
    program.serve(service);
    bool isStarted = false;
    queue.post([&program, &action, &isStarted, command] {
        program.delegate.applicationDidFinishLaunching();
        program.machine.permissionReminder.endStartUp();
        program.machine.soundServer.open();
        carryOut(program.delegate, action);
        program.firstRun.begin(command == Command::run);
        isStarted = true;
    });
    toolkit.run([&isStarted] { return isStarted; });
    TerminationSignals::endWithin(kQuitPatience);
    program.delegate.applicationWillTerminate();
    machine.defaults.flush();
    return 0;
}

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

}  // namespace
}  // namespace chimewerk

int main(int argumentCount, char** arguments) {
    const std::span<char* const> options(arguments + 1, arguments + argumentCount);
    const chimewerk::CommandLine line = chimewerk::parseCommandLine(options);
    if (line.command == chimewerk::Command::invalid) {
        std::fprintf(stderr, "chimewerk: %s\n", line.argument.c_str());
        return 2;
    }
    if (line.command == chimewerk::Command::printUsage) {
        std::fputs(chimewerk::usage().c_str(), stdout);
        return 0;
    }
    if (line.command == chimewerk::Command::printVersion) {
        std::puts("chimewerk " CHIMEWERK_VERSION);
        return 0;
    }
    if (chimewerk::isRemoteCommand(line.command)) {
        return chimewerk::request(line);
    }
    return chimewerk::run(argumentCount, arguments, line.command);
}
