// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <span>
#include <string>

namespace chimewerk {

/// What the user asks for on the command line.
enum class Command {
    /// Start the program; if it runs already, show it.
    run,
    openDashboard,
    openHelp,
    /// End the running program.
    quit,
    printUsage,
    printVersion,
};

/// Returns what these arguments, without the program's name, ask for; none when they are
/// not understood.
std::optional<Command> parseCommandLine(std::span<char* const> arguments);

/// The options in words, a line each.
std::string usage();

}  // namespace chimewerk
