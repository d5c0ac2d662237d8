// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/xdg_trash_source.h"

#include <dirent.h>
#include <sys/stat.h>

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

XdgTrashSource::XdgTrashSource(MainQueue& queue, const std::string& dataHome)
    : queue_(queue), folder_(dataHome + "/Trash/files") {}

double XdgTrashSource::modificationTime() const {
    struct stat status {};
    if (stat(folder_.c_str(), &status) != 0) {
        return 0;
    }
    constexpr double kNanosecond = 1e-9;
    return static_cast<double>(status.st_mtim.tv_sec) +
           static_cast<double>(status.st_mtim.tv_nsec) * kNanosecond;
}

void XdgTrashSource::countItems(CountCompletion completion) {
    worker_.post([this, completion = std::move(completion)](const std::stop_token& stop) mutable {
        const auto count = countEntries(folder_, stop);
        if (!stop.stop_requested()) {
            queue_.post([completion = std::move(completion), count] { completion(count); });
        }
    });
}

}  // namespace chimewerk
