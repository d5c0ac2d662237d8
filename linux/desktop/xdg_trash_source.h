// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/folder_alarm.h"
#include "linux/base/worker.h"
#include "linux/desktop/mount_table.h"
#include "monitors/trash_monitor.h"
#include "platform/source_report.h"

namespace chimewerk {

/// The desktop's trash: the folder "Trash/files" in the user's data folder, and the user's trash
/// folders at the top of other disks. Any folder may be a link, may be missing (it then counts 0
/// items), and may appear and disappear. The worker counts the items.
///
/// Announces changes, except where the kernel does not see all of them: if the home folder is on a
/// network file system, or the user has no watches left.
class XdgTrashSource final : public TrashSource, public ReportsItself {
public:
    /// `dataHome` is the user's data folder. The queue must outlive the source.
    XdgTrashSource(EpollMainQueue& queue, const std::string& dataHome,
                   const std::string& mountTable = "/proc/self/mountinfo");

    bool volumesChanged() override;
    double modificationTime() override;
    bool announcesChanges() const override { return seesMounts_ && alarm_.isSet(); }
    void countItems(CountCompletion completion) override;
    SourceReport report() override;

private:
    void collectFolders();
    bool isHomeLocal() const;

    EpollMainQueue& queue_;
    const std::string dataHome_;
    const std::string homeTrash_;
    MountTable mounts_;
    /// The trash of the home folder, then those of other disks.
    std::vector<std::string> folders_;
    FolderAlarm alarm_;
    bool seesMounts_ = false;
    Worker worker_;
};

}  // namespace chimewerk
