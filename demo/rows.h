#pragma once

#include <chrono>
#include <span>

namespace chimewerk {

/// One event of the demonstration: the real signal that makes the program play. The commands are run by the
/// shell, in the private session.
struct DemoRow {
    const char* event;
    /// What is done, in words for whoever watches.
    const char* what;
    /// Gives the signal. The time until the sound counts from the start of this command.
    const char* signal;
    /// By when after the start of the signal the sound must have begun.
    std::chrono::milliseconds deadline;
    /// Prints why the event cannot be shown here, or nothing when it can; no command when it always can.
    const char* obstacle = "";
    /// Run before the program is started: makes what the signal needs, and what the program must find at its
    /// start.
    const char* preparation = "";
};

/// In the order in which they are shown.
std::span<const DemoRow> demoRows();

}  // namespace chimewerk
