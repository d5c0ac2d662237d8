// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/command_line.h"

#include <string_view>

namespace chimewerk {

namespace {

struct Option {
    std::string_view name;
    Command command;
    std::string_view help;
};
constexpr Option kOptions[] = {
    {"--open-dashboard", Command::openDashboard,
     "shows the dashboard, and starts the program if need be"},
    {"--open-help", Command::openHelp, "shows the help, and starts the program if need be"},
    {"--quit", Command::quit, "ends the program that runs in this session"},
    {"--version", Command::printVersion, "prints the version"},
    {"--help", Command::printUsage, "prints this"},
};

}  // namespace

std::optional<Command> parseCommandLine(std::span<char* const> arguments) {
    if (arguments.empty()) {
        return Command::run;
    }
    for (const Option& option : kOptions) {
        if (arguments.size() == 1 && option.name == arguments[0]) {
            return option.command;
        }
    }
    // How session managers call a program that ran in the session before, with an id of theirs.
    if (arguments.size() == 2 && arguments[0] == std::string_view("-session")) {
        return Command::restore;
    }
    return std::nullopt;
}

std::string usage() {
    std::string text =
        "chimewerk [OPTION]\n"
        "Plays a short sound when something happens to the computer. Runs in the tray; started\n"
        "once more, it shows its dashboard.\n";
    for (const Option& option : kOptions) {
        text += "  " + std::string(option.name) + std::string(18 - option.name.size(), ' ') +
                std::string(option.help) + "\n";
    }
    return text;
}

}  // namespace chimewerk
