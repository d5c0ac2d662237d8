// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "linux/base/epoll_main_queue.h"
#include "monitors/screenshot_monitor.h"

namespace chimewerk {

/// Watches folders of this machine with inotify. FolderWatch describes what a watch survives.
class InotifyFolderSource final : public FolderSource {
public:
    /// The queue must outlive the source and its streams.
    explicit InotifyFolderSource(EpollMainQueue& queue) : queue_(queue) {}

    std::vector<std::string> list(const std::string& folder) const override;
    std::optional<FileIdentity> identify(const std::string& folder,
                                         const std::string& name) const override;
    std::unique_ptr<Stream> watch(const std::string& folder, Change onChange) override;

private:
    EpollMainQueue& queue_;
};

}  // namespace chimewerk
