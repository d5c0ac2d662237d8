// The composition root: makes the parts, connects them, runs the main loop. Members of the program know one
// another by the interfaces that they are given here.
#include "app/app_delegate.h"
#include "linux/decoder.h"
#include "linux/desktop_app_launch_source.h"
#include "linux/desktop_key_source.h"
#include "linux/epoll_main_queue.h"
#include "linux/inotify_folder_source.h"
#include "linux/json_defaults_store.h"
#include "linux/lid_sensor_table.h"
#include "linux/posix_file_system.h"
#include "linux/program_folders.h"
#include "linux/pulse_connection.h"
#include "linux/pulse_output_volume_source.h"
#include "linux/pulse_player.h"
#include "linux/pulse_sound_service.h"
#include "linux/quiet_file_manager_sounds.h"
#include "linux/rtnetlink_reachability_source.h"
#include "linux/session_environment.h"
#include "linux/sysfs_backlight_source.h"
#include "linux/system_clock.h"
#include "linux/termination_signals.h"
#include "linux/udev_usb_arrival_source.h"
#include "linux/xdg_folders.h"
#include "linux/xdg_permission_page.h"
#include "linux/xdg_trash_source.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"
#include "ui/qt_program.h"
#include "ui/qt_status_item.h"
#include "ui/qt_windows.h"

int main(int argumentCount, char** arguments) {
    using namespace chimewerk;

    EpollMainQueue queue;
    QtProgram* running = nullptr;
    const auto terminate = [&running] { running->quit(); };
    const TerminationSignals signals(queue, terminate);
    QtProgram program(argumentCount, arguments, "org.chimewerk.Chimewerk");
    running = &program;
    program.attach(queue.descriptor(), [&queue] { queue.dispatch(); });
    QtStatusItem statusItem;
    QtWindows windows;

    const SystemClock clock;
    const PosixFileSystem files;
    const ProgramFolders folders = findProgramFolders();
    NotificationCenter notifications;
    QuietFileManagerSounds fileManagerSounds;

    const Decoders decoders(folders.modules);
    PulseConnection soundServer;
    PulsePlayer player(soundServer);
    PulseSoundService soundService(decoders, player, folders.sounds + "/alerts");

    const SessionEnvironment session = SessionEnvironment::ofThisProcess();
    LidSensorTable lidSensor(queue, LidSensorTable::rows(queue));
    SysfsBacklightSource display;
    DesktopKeySource keys(queue, session);
    XdgPermissionPage keyPermissionPage(queue, folders.pages + "/keyboard-permission.html");
    PulseOutputVolumeSource output(soundServer);
    InotifyFolderSource watchedFolders(queue);
    DesktopAppLaunchSource launches(queue, session);
    XdgTrashSource trash(queue, xdgDataHome());
    RtnetlinkReachabilitySource reachability;
    UdevUsbArrivalSource usbDevices(queue);

    JsonDefaultsStore defaults(queue, xdgConfigHome());

    SoundManager sounds(folders.sounds, {.queue = queue,
                                         .notifications = notifications,
                                         .sounds = soundService,
                                         .files = files,
                                         .defaults = defaults,
                                         .fileManagerSounds = fileManagerSounds});
    AppDelegate delegate({.queue = queue,
                          .clock = clock,
                          .notifications = notifications,
                          .sounds = sounds,
                          .fileManagerSounds = fileManagerSounds,
                          .statusItem = statusItem,
                          .windows = windows,
                          .terminate = terminate},
                         {.lidSensor = lidSensor,
                          .display = display,
                          .keys = keys,
                          .keyPermissionPage = keyPermissionPage,
                          .output = output,
                          .folders = watchedFolders,
                          .screenshotFolders = screenshotFolders(),
                          .launches = launches,
                          .trash = trash,
                          .reachability = reachability,
                          .usbDevices = usbDevices});

    queue.post([&delegate] { delegate.applicationDidFinishLaunching(); });
    program.run();
    delegate.applicationWillTerminate();
    defaults.flush();
    return 0;
}
