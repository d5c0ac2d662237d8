// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <span>
#include <string>

namespace chimewerk {

/// What the command line asks for.
enum class Command {
    /// Start the program; if it runs already, show it.
    run,
    openDashboard,
    openHelp,
    /// Start the program without a window, unless it runs already, as when the session begins.
    background,
    /// Let the program listen for knocks, or not, whether it runs or not.
    allowMicrophone,
    denyMicrophone,
    /// End the running program.
    quit,
    printUsage,
    printVersion,
};

/// Returns the command that these arguments (without the program's name) give; none if they
/// are invalid.
std::optional<Command> parseCommandLine(std::span<char* const> arguments);

/// Returns the help on the options, one line each.
std::string usage();

}  // namespace chimewerk
