// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <span>

namespace chimewerk {

/// One event of the demonstration: the real signal that makes the program play. The commands are
/// run by the shell, in the private session.
struct DemoRow {
    const char* event;
    /// What is done, in words for the reader of the output.
    const char* what;
    /// Gives the signal. The delay of the sound is measured from the start of this command.
    const char* signal;
    /// How long after the start of `signal` the sound must begin at the latest.
    std::chrono::milliseconds deadline;
    /// Prints why the event cannot be shown here, or nothing when it can; no command when it
    /// always can.
    const char* obstacle = "";
    /// Run before the program starts: makes what the signal needs.
    const char* preparation = "";
};

/// In the order in which they are shown.
std::span<const DemoRow> demoRows();

}  // namespace chimewerk
