// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/bus/bus_link.h"
#include "platform/file_manager_sounds.h"

namespace chimewerk {

/// The user's settings of Plasma's notifications, as the text of their file.
///
/// Takes the sound from what happens when the trash is emptied, and remembers the user's choice
/// beside it, in a key that Plasma leaves alone. Changes nothing if there is no sound, or if the
/// choice is locked.
std::string withoutTrashSound(const std::string& text);
/// Gives back what `withoutTrashSound` took, unless the user has chosen something since.
std::string withUsersTrashSound(const std::string& text);

/// The sound that Plasma's file manager plays when it empties the trash. Since the user's choice is
/// remembered in Plasma's own file, it can be given back after a crash too. Where Plasma is not
/// installed, nothing happens. Main thread only; reads and writes a small file.
class PlasmaTrashSound final : public FileManagerSounds {
public:
    /// Uses the user's own file. The queue must outlive the object.
    explicit PlasmaTrashSound(EpollMainQueue& queue);

    void setFinderTrashSoundEnabled(bool enabled) override;

private:
    void announce();

    sd_bus* bus_ = nullptr;
    BusLink link_;
};

}  // namespace chimewerk
