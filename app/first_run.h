// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <utility>

#include "platform/defaults_store.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Shows a new user that the program runs: by its dashboard, and by a message where no tray shows
/// its icon. Main thread only.
class FirstRun {
public:
    /// The settings key that is true once the program has been started.
    static constexpr char kStartedKey[] = "ChimewerkStarted";
    /// How long after the start a tray may appear. Panels are slow at the first login.
    static constexpr Seconds kPatience{20};

    struct Actions {
        std::function<void()> openDashboard;
        std::function<bool()> isInTray;
        /// Says that the program runs, and how to reach it.
        std::function<void()> tell;
    };

    /// `queue` and `defaults` must outlive the object.
    FirstRun(MainQueue& queue, DefaultsStore& defaults, Actions actions)
        : queue_(queue), defaults_(defaults), actions_(std::move(actions)) {}

    /// Does nothing but at the user's very first start. `showsDashboard` is false where the user has
    /// not asked for a window.
    void begin(bool showsDashboard);

private:
    MainQueue& queue_;
    DefaultsStore& defaults_;
    const Actions actions_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
