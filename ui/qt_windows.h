#pragma once

#include <string>

#include "app/windows.h"
#include "monitors/keyboard_monitor.h"
#include "platform/defaults_store.h"
#include "platform/file_system.h"
#include "platform/notification_center.h"
#include "platform/sound_folder.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// Makes the windows of this folder.
class QtWindows final : public WindowFactory {
public:
    /// What the dashboard works on beside the delegate; all of it outlives the windows.
    struct Parts {
        SoundManager& sounds;
        NotificationCenter& notifications;
        DefaultsStore& defaults;
        const FileSystem& files;
        /// Where the program's own sounds are, an absolute path; empty when there is no such folder.
        std::string resourceFolder;
        SoundFolder& soundFolder;
        KeySource& keys;
        PermissionPage& keyPermissionPage;
        /// Whether the lid-angle event can work on this machine.
        bool isAppleSilicon = false;
    };

    explicit QtWindows(const Parts& parts) : parts_(parts) {}

    std::unique_ptr<Window> makeDashboard(AppDelegate& delegate) override;
    std::unique_ptr<Window> makeHelpWindow() override;

private:
    const Parts parts_;
};

}  // namespace chimewerk
