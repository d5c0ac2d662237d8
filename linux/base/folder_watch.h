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
#include "linux/base/retry_interval.h"
#include "platform/delayed_call.h"

namespace chimewerk {

/// Reports names that appear in a folder or disappear from it. Follows the path when the folder is
/// deleted and created again, replaced by a link or another folder, unmounted, or missing at first.
/// While the folder is missing, watches the nearest folder above it; if that cannot report its
/// return (a dangling link, an unreadable folder), the watch polls. It uses no processor time while
/// nothing happens. A file system mounted over the folder is noticed only when the folder
/// underneath changes. Main thread only; must not be destroyed from within its notice.
class FolderWatch {
public:
    /// `name` appeared, disappeared or was replaced. Empty if the folder itself has changed, and
    /// with it perhaps any name.
    using Notice = std::function<void(std::string_view name)>;

    enum class Report {
        names,
        /// Names, and changes of permissions and ownership.
        namesAndPermissions,
    };

    /// `path` is absolute. The queue must outlive the watch. `interval` is the time between two
    /// polls for a missing folder.
    FolderWatch(EpollMainQueue& queue, std::string path, Notice notice,
                Report report = Report::names, Seconds interval = kRetryInterval);

private:
    void attach();
    void watchNearestAbove();
    bool needsPolling() const;
    int add(const std::string& folder) const;
    void read();
    void tryAgain();

    EpollMainQueue& queue_;
    const std::string path_;
    const Notice notice_;
    const std::uint32_t mask_;
    FileDescriptor inotify_;
    // Destroyed before the descriptor that it watches.
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    int folder_ = -1;
    int above_ = -1;
    std::string pathAbove_;
    /// The first part of the path below the folder above.
    std::string next_;
    DelayedCall retry_;
};

}  // namespace chimewerk
