// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Returns the mount points of disks in the text of /proc/self/mountinfo: file systems on a device,
/// mounted for writing. Network file systems are left out, because access would block if their
/// server is dead.
std::vector<std::string> writableDisksIn(std::string_view mountInfo);

/// A mount table of the kernel. One thread at a time.
class MountTable {
public:
    /// `file` has the kernel's format.
    explicit MountTable(const std::string& file);

    /// Returns the mount points of disks.
    const std::vector<std::string>& writableDisks() const { return disks_; }

    /// Reads the table again if the kernel reports a change. Returns whether the list of disks
    /// has changed.
    bool refresh();

    /// Calls `changed` from the queue once at the beginning and after each change of the table.
    /// Returns false if the file cannot report changes. The queue must outlive the table.
    bool watch(EpollMainQueue& queue, std::function<void()> changed);

private:
    void read();

    const std::string path_;
    FileDescriptor file_;
    /// Another one, because each descriptor tells of a change only once.
    FileDescriptor watchedFile_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    std::vector<std::string> disks_;
};

}  // namespace chimewerk
