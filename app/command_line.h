#pragma once

#include <optional>
#include <span>
#include <string>

namespace chimewerk {

/// What the user asks for on the command line.
enum class Command {
    /// To have the program running; if it runs already, to see it.
    run,
    openDashboard,
    openHelp,
    /// To end the program that runs.
    quit,
    printUsage,
    printVersion,
};

/// What these arguments, without the program's name, ask for; none when they make no sense.
std::optional<Command> parseCommandLine(std::span<char* const> arguments);

/// The options in words, a line each.
std::string usage();

}  // namespace chimewerk
