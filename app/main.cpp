// The composition root: makes the parts, connects them, runs the main loop. Members of the program know one another by
// the interfaces that they are given here.
#include "app/app_delegate.h"
#include "linux/decoder.h"
#include "linux/epoll_main_queue.h"
#include "linux/json_defaults_store.h"
#include "linux/posix_file_system.h"
#include "linux/program_folders.h"
#include "linux/pulse_connection.h"
#include "linux/pulse_player.h"
#include "linux/pulse_sound_service.h"
#include "linux/quiet_file_manager_sounds.h"
#include "linux/system_clock.h"
#include "linux/termination_signals.h"
#include "linux/xdg_folders.h"
#include "linux/xdg_trash_source.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"

int main() {
    using namespace chimewerk;

    EpollMainQueue queue;
    const TerminationSignals signals(queue, [&queue] { queue.quit(); });

    const SystemClock clock;
    const PosixFileSystem files;
    const ProgramFolders folders = findProgramFolders();
    NotificationCenter notifications;
    QuietFileManagerSounds fileManagerSounds;

    const Decoders decoders(folders.modules);
    PulseConnection soundServer;
    PulsePlayer player(soundServer);
    PulseSoundService soundService(decoders, player, folders.sounds + "/alerts");
    XdgTrashSource trash(queue, xdgDataHome());

    JsonDefaultsStore defaults(queue, xdgConfigHome());

    SoundManager sounds(folders.sounds,
                        {.queue = queue,
                         .notifications = notifications,
                         .sounds = soundService,
                         .files = files,
                         .defaults = defaults,
                         .fileManagerSounds = fileManagerSounds});
    AppDelegate delegate({.queue = queue,
                          .clock = clock,
                          .sounds = sounds,
                          .fileManagerSounds = fileManagerSounds,
                          .trash = trash});

    queue.post([&delegate] { delegate.applicationDidFinishLaunching(); });
    queue.run();
    delegate.applicationWillTerminate();
    defaults.flush();
    return 0;
}
