// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace chimewerk {

/// Finds the processes that have opened their first window, from the list of all windows each time
/// it changes.
class FirstWindows {
public:
    using Window = std::uint32_t;
    /// Identifies a process for as long as it lives.
    using Owner = std::uint64_t;

    struct Facts {
        /// None if the window is already gone.
        std::optional<Owner> owner;
        /// Whether the user works in this window; false for panels and the desktop.
        bool isForUser = true;
    };

    struct Dependencies {
        /// Returns the facts about these windows, in the same order.
        std::function<std::vector<Facts>(const std::vector<Window>&)> factsOf;
        /// Returns whether a process without windows is still running.
        std::function<bool(Owner)> isAlive;
        /// Called for each process that has opened its first window.
        std::function<void(Owner)> onFirstWindow;
    };

    explicit FirstWindows(Dependencies dependencies);

    /// Forgets everything and takes the owners of these windows as already running.
    void begin(const std::vector<Window>& list);

    /// Compares with the new list. A process that closes all its windows stays known while it runs.
    void update(const std::vector<Window>& list);

    /// Returns the number of known processes.
    std::size_t known() const { return windowsOf_.size(); }

private:
    std::vector<Owner> addWindows(const std::vector<Window>& list);
    void removeWindows(const std::vector<Window>& list);

    const Dependencies deps_;
    std::map<Window, Owner> ownerOf_;
    /// Number of windows of each known process; may be 0.
    std::map<Owner, int> windowsOf_;
};

}  // namespace chimewerk
