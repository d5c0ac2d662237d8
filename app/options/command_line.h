// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

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
    // Requests to the running program.
    play,
    mute,
    unmute,
    toggleMute,
    selectTheme,
    enable,
    disable,
    list,
    check,
    checkAsJson,
    printUsage,
    printVersion,
    /// The arguments cannot be understood.
    invalid,
};

/// Whether this command is a request to the running program.
bool isRemoteCommand(Command command);
/// Whether it can be carried out without a running program, too.
bool isCheck(Command command);

struct CommandLine {
    Command command = Command::run;
    /// The event or theme that the command needs; what is wrong if the command is `invalid`.
    std::string argument = {};

    bool operator==(const CommandLine&) const = default;
};

/// Reads the arguments, without the program's name.
CommandLine parseCommandLine(std::span<char* const> arguments);

/// Returns the help on the options, one line each.
std::string usage();

}  // namespace chimewerk
