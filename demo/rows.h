// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <span>

namespace chimewerk {

/// One event of the demonstration, with the real signal that triggers it. The commands run in a
/// shell in the private session.
struct DemoRow {
    const char* event;
    /// What happens, as printed.
    const char* what;
    /// Gives the signal. The delay of the sound is measured from the start of this command.
    const char* signal;
    /// How long after the start of `signal` the sound may begin at the latest.
    std::chrono::milliseconds deadline;
    /// Prints why the event cannot be shown here, or nothing if it can. Empty if it always can.
    const char* obstacle = "";
    /// Runs before the program starts and prepares what the signal needs.
    const char* preparation = "";
};

/// The rows in the order in which they are shown.
std::span<const DemoRow> demoRows();

}  // namespace chimewerk
