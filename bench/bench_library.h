// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "bench/null_parts.h"
#include "linux/base/epoll_main_queue.h"
#include "linux/base/posix_file_system.h"
#include "linux/desktop/null_file_manager_sounds.h"
#include "linux/storage/json_defaults_store.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// The sound library with the real store and queue; it plays nothing.
struct BenchLibrary {
    /// Uses the settings in this configuration folder; stores nothing if it is empty.
    BenchLibrary(EpollMainQueue& queue, const std::string& configHome)
        : defaults(queue, configHome),
          sounds("/res", {.queue = queue,
                          .notifications = notifications,
                          .sounds = service,
                          .files = files,
                          .defaults = defaults,
                          .fileManagerSounds = fileManager}) {}

    NotificationCenter notifications;
    PosixFileSystem files;
    JsonDefaultsStore defaults;
    NullSoundService service;
    NullFileManagerSounds fileManager;
    SoundManager sounds;
};

}  // namespace chimewerk
