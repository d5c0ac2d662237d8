// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "linux/base/worker.h"
#include "linux/desktop/mount_table.h"
#include "monitors/trash_monitor.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// The desktop's trash: the folder "Trash/files" in the user's data folder, and the user's trash
/// folders at the top of other disks. Any folder may be a link, may be missing (it then counts 0
/// items), and may appear and disappear. The worker counts the items.
class XdgTrashSource final : public TrashSource {
public:
    /// `dataHome` is the user's data folder. The queue must outlive the source.
    XdgTrashSource(MainQueue& queue, const std::string& dataHome,
                   const std::string& mountTable = "/proc/self/mountinfo");

    bool volumesChanged() override;
    double modificationTime() const override;
    void countItems(CountCompletion completion) override;

private:
    void collectFolders();

    MainQueue& queue_;
    const std::string homeTrash_;
    MountTable mounts_;
    /// The trash of the home folder, then those of other disks.
    std::vector<std::string> folders_;
    Worker worker_;
};

}  // namespace chimewerk
