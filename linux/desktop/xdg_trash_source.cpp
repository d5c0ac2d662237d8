// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/xdg_trash_source.h"

#include <dirent.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <stop_token>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

std::optional<std::int64_t> countEntries(const std::string& folder, const std::stop_token& stop) {
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.c_str()));
    if (!directory) {
        return errno == ENOENT ? std::optional<std::int64_t>(0) : std::nullopt;
    }
    std::int64_t count = 0;
    while (!stop.stop_requested()) {
        errno = 0;
        const dirent* const entry = readdir(directory.get());
        if (entry == nullptr) {
            return errno == 0 ? std::optional(count) : std::nullopt;
        }
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..") {
            ++count;
        }
    }
    return std::nullopt;
}

}  // namespace

XdgTrashSource::XdgTrashSource(EpollMainQueue& queue, const std::string& dataHome,
                               const std::string& mountTable)
    : queue_(queue),
      dataHome_(dataHome),
      homeTrash_(dataHome + "/Trash/files"),
      mounts_(mountTable),
      alarm_(queue, [this] { announce(); }) {
    collectFolders();
    seesMounts_ = mounts_.watch(queue, [this] {
        alarm_.unset();  // The paths may lead elsewhere now.
        announce();
    });
}

bool XdgTrashSource::volumesChanged() {
    const bool changed = mounts_.refresh();
    if (changed) {
        collectFolders();
    }
    return changed;
}

void XdgTrashSource::collectFolders() {
    alarm_.unset();
    const std::string user = std::to_string(getuid());
    folders_ = {homeTrash_};
    for (const std::string& disk : mounts_.writableDisks()) {
        const std::string top = disk == "/" ? "" : disk;
        folders_.push_back(top + "/.Trash-" + user + "/files");
        folders_.push_back(top + "/.Trash/" + user + "/files");
    }
}

/// Returns whether everything that changes the home trash happens on this machine, where the kernel
/// reports it.
bool XdgTrashSource::isHomeLocal() const {
    static constexpr auto kRemote = std::to_array<unsigned>(
        {AFS_FS_MAGIC, CEPH_SUPER_MAGIC, CIFS_SUPER_MAGIC, CODA_SUPER_MAGIC, FUSE_SUPER_MAGIC,
         NFS_SUPER_MAGIC, SMB_SUPER_MAGIC, SMB2_SUPER_MAGIC, V9FS_MAGIC});
    struct statfs status {};
    const bool isThere =
        statfs(homeTrash_.c_str(), &status) == 0 || statfs(dataHome_.c_str(), &status) == 0;
    return !isThere ||
           std::ranges::find(kRemote, static_cast<unsigned>(status.f_type)) == kRemote.end();
}

/// Returns the sum of the folders' times, which changes when any of them does.
double XdgTrashSource::modificationTime() {
    if (!alarm_.isSet() && seesMounts_ && isHomeLocal()) {
        alarm_.set(folders_);
    }
    double sum = 0;
    for (const std::string& folder : folders_) {
        struct stat status {};
        if (stat(folder.c_str(), &status) == 0) {
            constexpr double kNanosecond = 1e-9;
            sum += static_cast<double>(status.st_mtim.tv_sec) +
                   static_cast<double>(status.st_mtim.tv_nsec) * kNanosecond;
        }
    }
    return sum;
}

SourceReport XdgTrashSource::report() {
    const auto others =
        std::count_if(folders_.begin() + 1, folders_.end(),
                      [](const std::string& folder) { return access(folder.c_str(), F_OK) == 0; });
    const std::string home = homeTrash_.substr(0, homeTrash_.rfind('/'));
    return {.mechanism =
                others == 0 ? home : home + " and " + std::to_string(others) + " on disks"};
}

void XdgTrashSource::countItems(CountCompletion completion) {
    worker_.post([this, folders = folders_,
                  completion = std::move(completion)](const std::stop_token& stop) mutable {
        auto count = countEntries(folders.front(), stop);
        for (std::size_t i = 1; count && i < folders.size(); ++i) {
            // The trash of another disk may be unreadable; it then does not count.
            *count += countEntries(folders[i], stop).value_or(0);
        }
        if (!stop.stop_requested()) {
            queue_.post([completion = std::move(completion), count] { completion(count); });
        }
    });
}

}  // namespace chimewerk
