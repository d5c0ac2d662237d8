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
    {"--background", Command::background, "starts the program without a window, as at login"},
    {"--microphone allow", Command::allowMicrophone, "lets the program listen for knocks"},
    {"--microphone deny", Command::denyMicrophone, "keeps it from listening"},
    {"--quit", Command::quit, "ends the program that runs in this session"},
    {"--version", Command::printVersion, "prints the version"},
    {"--help", Command::printUsage, "prints this"},
};

}  // namespace

std::optional<Command> parseCommandLine(std::span<char* const> arguments) {
    if (arguments.empty()) {
        return Command::run;
    }
    std::string line = arguments[0];
    for (char* const argument : arguments.subspan(1)) {
        line.append(" ").append(argument);
    }
    for (const Option& option : kOptions) {
        if (option.name == line) {
            return option.command;
        }
    }
    // How session managers call a program that ran in the session before, with an id of theirs.
    if (arguments.size() == 2 && arguments[0] == std::string_view("-session")) {
        return Command::background;
    }
    return std::nullopt;
}

std::string usage() {
    std::string text =
        "chimewerk [OPTION]\n"
        "Plays a short sound when something happens to the computer. Runs in the tray; started\n"
        "once more, it shows its dashboard.\n";
    for (const Option& option : kOptions) {
        text += "  " + std::string(option.name) + std::string(20 - option.name.size(), ' ') +
                std::string(option.help) + "\n";
    }
    return text;
}

}  // namespace chimewerk
