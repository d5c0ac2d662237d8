#pragma once

#include <string>

#include "linux/base/worker.h"
#include "linux/decoding/decoder.h"
#include "platform/main_queue.h"
#include "platform/sound_folder.h"

namespace chimewerk {

/// The folder Chimewerk in the user's data folder. A file is copied there and tried out on a thread of its
/// own, under a name that only this program gives, and takes its place on the main thread at the very end: a
/// copy that is given up, or that a crash cuts off, replaces nothing.
class XdgSoundFolder final : public SoundFolder {
public:
    /// `dataHome` as `xdgDataHome()` has it. Queue and decoders outlive the object. Removes what killed
    /// programs have left there.
    XdgSoundFolder(MainQueue& queue, const Decoders& decoders, const std::string& dataHome);

    std::unique_ptr<Addition> add(const std::string& file, Done done) override;

private:
    class Running;

    MainQueue& queue_;
    const Decoders& decoders_;
    /// Empty when there is no data folder.
    const std::string folder_;
    /// Last, so that it ends first: its job uses the others.
    Worker worker_;
};

}  // namespace chimewerk
