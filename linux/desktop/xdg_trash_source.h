// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/worker.h"
#include "monitors/trash_monitor.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// The desktop's trash: the folder "Trash/files" in the user's data folder. The folder may be a
/// link, may be missing (the count is then 0), and may come and go. The worker counts the items.
class XdgTrashSource final : public TrashSource {
public:
    /// `dataHome` is the user's data folder. The queue must outlive the source.
    XdgTrashSource(MainQueue& queue, const std::string& dataHome);

    double modificationTime() const override;
    void countItems(CountCompletion completion) override;

private:
    MainQueue& queue_;
    const std::string folder_;
    Worker worker_;
};

}  // namespace chimewerk
