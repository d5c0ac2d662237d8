// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/worker.h"
#include "linux/decoding/decoder.h"
#include "platform/main_queue.h"
#include "platform/sound_folder.h"

namespace chimewerk {

/// The folder "Chimewerk" in the user's data folder. A worker copies a file there under a temporary
/// name and checks that it can be played; the main thread then renames it. A copy that is cancelled
/// or cut off by a crash replaces nothing.
class XdgSoundFolder final : public SoundFolder {
public:
    /// `dataHome` is the result of `xdgDataHome()`. `queue` and `decoders` must outlive the object.
    /// Removes the leftovers of killed programs.
    XdgSoundFolder(MainQueue& queue, const Decoders& decoders, const std::string& dataHome);

    std::unique_ptr<Addition> add(const std::string& file, Done done) override;

private:
    class Running;

    MainQueue& queue_;
    const Decoders& decoders_;
    /// Empty if there is no data folder.
    const std::string folder_;
    /// Declared last, so that it is destroyed first: its job uses the other members.
    Worker worker_;
};

}  // namespace chimewerk
