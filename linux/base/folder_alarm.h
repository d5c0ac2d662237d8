// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Tells once that some folders may have changed: their names, their times, or what their paths
/// lead to. Whoever reads the folders again sets the alarm again before that. So however much
/// happens in them, it costs one call per reading. Main thread only.
class FolderAlarm {
public:
    /// Calls `goesOff` on the main thread. The queue must outlive the alarm.
    FolderAlarm(EpollMainQueue& queue, std::function<void()> goesOff);

    /// Sets the alarm for these folders, given by absolute paths. A missing one is watched
    /// for from the nearest folder above. Returns false, and sets nothing, if one of them may
    /// change unnoticed.
    bool set(const std::vector<std::string>& folders);
    /// Returns whether the alarm is set and has not gone off.
    bool isSet() const { return watch_ != nullptr; }
    void unset() { watch_ = nullptr; }

private:
    bool addFolderAndNearestAbove(const std::string& folder, std::set<int>& watched);
    int add(const std::string& folder);
    void discardEvents();

    EpollMainQueue& queue_;
    const std::function<void()> goesOff_;
    /// Made once: closing it would wait for the kernel.
    const FileDescriptor inotify_;
    std::set<int> watched_;
    // Destroyed before the descriptor that it watches.
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
