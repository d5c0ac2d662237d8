// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/base/retry.h"

namespace chimewerk {

/// Reports the names that come into a folder and leave it. It follows the path when the folder is
/// deleted and made again, replaced by a link or another folder, unmounted, or missing at first.
/// While the folder is missing, the nearest folder above it is watched; only where that reports
/// nothing (a dangling link, a folder that may not be read) does the watch look at intervals. It
/// costs nothing while nothing happens. A file system mounted over the folder goes unnoticed until
/// the folder underneath changes. Main thread only; must not be destroyed from within its notice.
class FolderWatch {
public:
    /// `name` came, left or was replaced. Empty if the folder itself has changed, and with it
    /// any name.
    using Notice = std::function<void(std::string_view name)>;

    enum class Report {
        names,
        /// Names, and changes of permissions and ownership.
        namesAndPermissions,
    };

    /// `path` is absolute. The queue outlives the watch. `interval` lies between two looks for
    /// the folder.
    FolderWatch(EpollMainQueue& queue, std::string path, Notice notice,
                Report report = Report::names, Seconds interval = Retry::kInterval);

private:
    void attach();
    void watchNearestAbove();
    bool nothingWillReport() const;
    int add(const std::string& folder) const;
    void read();
    void lookAgain();

    EpollMainQueue& queue_;
    const std::string path_;
    const Notice notice_;
    const std::uint32_t mask_;
    FileDescriptor inotify_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;  // ends before the descriptor that it watches
    int folder_ = -1;
    int above_ = -1;
    std::string pathAbove_;
    /// The name in the folder above on the way to the folder.
    std::string next_;
    Retry retry_;
};

}  // namespace chimewerk
