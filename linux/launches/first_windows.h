// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace chimewerk {

/// Finds the processes that have opened the first window that the user works in, from the list of
/// all windows each time it changes.
class FirstWindows {
public:
    using Window = std::uint32_t;
    /// Identifies a process for as long as it lives.
    using Owner = std::uint64_t;

    enum class Role {
        application,
        /// A dialog, a notification, a splash screen or the like.
        secondary,
        /// A panel or the desktop; whoever owns one is part of the desktop.
        desktop
    };

    struct Facts {
        /// None if the window is already gone.
        std::optional<Owner> owner;
        Role role = Role::application;
    };

    struct Dependencies {
        /// Returns the facts about these windows, in the same order.
        std::function<std::vector<Facts>(const std::vector<Window>&)> factsOf;
        /// Returns whether a process without windows is still running.
        std::function<bool(Owner)> isAlive;
        /// Called for each process that has opened its first window for the user.
        std::function<void(Owner, Window)> onFirstWindow;
    };

    explicit FirstWindows(Dependencies dependencies);

    /// Forgets everything and takes the owners of these windows as already running.
    void begin(const std::vector<Window>& list);

    /// Compares with the new list. A process that closes all its windows stays known while it runs.
    void update(const std::vector<Window>& list);

    /// Returns the number of known processes.
    std::size_t known() const { return owners_.size(); }

private:
    struct OwnerState {
        int windows = 0;
        /// Has had its first window, or never will.
        bool isDecided = false;
    };

    std::vector<std::pair<Owner, Window>> addWindows(const std::vector<Window>& list);
    void removeWindows(const std::vector<Window>& list);

    const Dependencies deps_;
    std::map<Window, Owner> ownerOf_;
    /// The known processes, also those without a window.
    std::map<Owner, OwnerState> owners_;
};

}  // namespace chimewerk
