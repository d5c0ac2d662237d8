#pragma once

#include "linux/base/epoll_main_queue.h"
#include "monitors/screenshot_monitor.h"

namespace chimewerk {

/// The folders of this machine, watched with inotify: see FolderWatch for what a watch survives.
class InotifyFolderSource final : public FolderSource {
public:
    /// The queue outlives the source and its streams.
    explicit InotifyFolderSource(EpollMainQueue& queue) : queue_(queue) {}

    std::vector<std::string> list(const std::string& folder) const override;
    std::unique_ptr<Stream> watch(const std::string& folder,
                                  std::function<void()> onChange) override;

private:
    EpollMainQueue& queue_;
};

}  // namespace chimewerk
