// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "linux/base/folder_watch.h"

namespace chimewerk {

/// Knows whether a session of this user is in the foreground of a seat, as logind says. Without
/// logind it always is. Main thread only.
class ActiveSeat {
public:
    struct Logind {
        /// A file in this folder is replaced when another session comes to the foreground.
        std::string folder = "/run/systemd/seats";
        std::function<bool()> isOurs = ask;

        static bool ask();
    };

    /// The queue must outlive the object.
    ActiveSeat(EpollMainQueue& queue, const Logind& logind)
        : isOurs_(logind.isOurs()),
          watch_(queue, logind.folder, [this, ask = logind.isOurs](auto) { isOurs_ = ask(); }) {}

    bool isOurs() const { return isOurs_; }

private:
    bool isOurs_;
    FolderWatch watch_;
};

}  // namespace chimewerk
