// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/folder_alarm.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace chimewerk {

namespace {

constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB |
                                   IN_MODIFY | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

std::string folderAbove(const std::string& path) {
    return path.substr(0, std::max<std::size_t>(1, path.rfind('/')));
}

}  // namespace

FolderAlarm::FolderAlarm(EpollMainQueue& queue, std::function<void()> goesOff)
    : queue_(queue),
      goesOff_(std::move(goesOff)),
      inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

bool FolderAlarm::set(const std::vector<std::string>& folders) {
    unset();
    discardEvents();
    std::set<int> watched;
    const bool all = std::ranges::all_of(folders, [&](const std::string& folder) {
        return addFolderAndNearestAbove(folder, watched);
    });
    watched.erase(-1);
    for (const int unneeded : watched_) {
        if (!watched.contains(unneeded)) {
            inotify_rm_watch(inotify_.get(), unneeded);
        }
    }
    watched_ = std::move(watched);
    if (all) {
        watch_ = queue_.watch(inotify_.get(), [this] {
            unset();
            goesOff_();
        });
    }
    return isSet();
}

/// Watches the nearest folder above even if the folder is there: its path may come to lead
/// elsewhere. It is added first, so that the folder cannot appear unnoticed in between.
bool FolderAlarm::addFolderAndNearestAbove(const std::string& folder, std::set<int>& watched) {
    std::string below = folder;
    std::string above = folderAbove(folder);
    int added = add(above);
    while (added < 0 && above.size() > 1) {
        below = above;
        above = folderAbove(above);
        added = add(above);
    }
    watched.insert(added);
    const int self = add(folder);
    watched.insert(self);
    // What is there and cannot be watched, such as a dangling link, may change unnoticed.
    struct stat status {};
    return self >= 0 || (added >= 0 && lstat(below.c_str(), &status) != 0);
}

int FolderAlarm::add(const std::string& folder) {
    return inotify_add_watch(inotify_.get(), folder.c_str(), kChanges);
}

void FolderAlarm::discardEvents() {
    std::array<char, std::size_t{16} * 1024> events{};
    while (read(inotify_.get(), events.data(), events.size()) > 0) {
    }
}

}  // namespace chimewerk
