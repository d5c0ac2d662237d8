#pragma once

#include <string>

#include "linux/base/worker.h"
#include "monitors/trash_monitor.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// The desktop's trash: the folder "Trash/files" in the user's data folder. It may be missing (nothing has
/// been trashed yet; the count is 0), be a link, come and go. Items are counted on the worker.
class XdgTrashSource final : public TrashSource {
public:
    /// `dataHome` is the user's data folder; the queue outlives the source.
    XdgTrashSource(MainQueue& queue, const std::string& dataHome);

    double modificationTime() const override;
    void countItems(CountCompletion completion) override;

private:
    MainQueue& queue_;
    const std::string folder_;
    Worker worker_;
};

}  // namespace chimewerk
