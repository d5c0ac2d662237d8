// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/xdg_trash_source.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

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

XdgTrashSource::XdgTrashSource(MainQueue& queue, const std::string& dataHome,
                               const std::string& mountTable)
    : queue_(queue), homeTrash_(dataHome + "/Trash/files"), mounts_(mountTable) {
    collectFolders();
}

bool XdgTrashSource::volumesChanged() {
    const bool changed = mounts_.refresh();
    if (changed) {
        collectFolders();
    }
    return changed;
}

void XdgTrashSource::collectFolders() {
    const std::string user = std::to_string(getuid());
    folders_ = {homeTrash_};
    for (const std::string& disk : mounts_.writableDisks()) {
        const std::string top = disk == "/" ? "" : disk;
        folders_.push_back(top + "/.Trash-" + user + "/files");
        folders_.push_back(top + "/.Trash/" + user + "/files");
    }
}

/// Returns the sum of the folders' times, which changes when any of them does.
double XdgTrashSource::modificationTime() const {
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
