#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Tells which names come into a folder and leave it, and goes on telling when the folder is deleted and made
/// again, replaced by a link or another folder, unmounted, or was not there to begin with. While the folder
/// is missing, the nearest folder above it is watched instead; only where even that cannot tell (a dangling
/// link, a folder that may not be read) is there a look every 3 s. Idle, it costs nothing. A file system
/// mounted over the folder goes unnoticed until the folder underneath changes. Main thread only; must not be
/// destroyed from within its notice.
class FolderWatch {
public:
    /// `name` came, left or was replaced; empty when the folder itself has changed and any name in it may
    /// have.
    using Notice = std::function<void(std::string_view name)>;

    enum class Report {
        names,
        /// Changes of permissions and ownership of what is in the folder, too.
        namesAndPermissions,
    };

    /// `path` is absolute. The queue outlives the watch.
    FolderWatch(EpollMainQueue& queue, std::string path, Notice notice,
                Report report = Report::names);

private:
    void attach();
    void watchNearestAbove();
    bool nothingWillTell() const;
    int add(const std::string& folder) const;
    void read();
    void retryLater();

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
    bool retrying_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
