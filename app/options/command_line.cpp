// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/options/command_line.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "app/options/names.h"

namespace chimewerk {

namespace {

struct Option {
    std::string_view name;
    /// What comes after the option; empty if nothing does.
    std::string_view argument;
    Command command;
    std::string_view help;
};
constexpr Option kOptions[] = {
    {"--open-dashboard", "", Command::openDashboard,
     "shows the dashboard; starts the program if need be"},
    {"--open-help", "", Command::openHelp, "shows the help; starts the program if need be"},
    {"--background", "", Command::background, "starts the program without a window, as at login"},
    {"--microphone", "allow|deny", Command::allowMicrophone,
     "lets the program listen for knocks, or not"},
    {"--quit", "", Command::quit, "ends the program that runs in this session"},
    {"--play", "EVENT", Command::play, "plays the sound of an event"},
    {"--mute", "", Command::mute, "silences the program until it is unmuted or ends"},
    {"--unmute", "", Command::unmute, "lets it sound again"},
    {"--toggle-mute", "", Command::toggleMute, "does the one or the other"},
    {"--theme", "THEME", Command::selectTheme, "selects a theme"},
    {"--enable", "EVENT", Command::enable, "switches an event on"},
    {"--disable", "EVENT", Command::disable, "switches an event off"},
    {"--list", "", Command::list, "lists the events and the themes"},
    {"--check", "", Command::check, "says how each event is heard, and what is missing"},
    {"--check", "--json", Command::checkAsJson, "says so in JSON, for bug reports"},
    {"--version", "", Command::printVersion, "prints the version"},
    {"--help", "", Command::printUsage, "prints this; so does -h"},
};

CommandLine invalid(std::string what) {
    return {.command = Command::invalid, .argument = std::move(what)};
}

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

CommandLine unknownOption(std::string_view typed) {
    std::vector<Name> names;
    for (const Option& option : kOptions) {
        if (option.command != Command::checkAsJson) {
            names.push_back({.name = std::string(option.name)});
        }
    }
    return invalid("There is no option " + quoted(typed) + ". " + didYouMean(typed, names));
}

CommandLine microphoneAnswer(const std::vector<std::string_view>& rest) {
    const bool allows = rest.size() == 1 && rest[0] == "allow";
    if (!allows && (rest.size() != 1 || rest[0] != "deny")) {
        return invalid("--microphone needs allow or deny after it.");
    }
    return {.command = allows ? Command::allowMicrophone : Command::denyMicrophone};
}

/// How session managers call a program that ran in the session before, with an id of theirs.
bool isRestored(std::span<char* const> arguments) {
    return arguments.size() == 2 && arguments[0] == std::string_view("-session");
}

}  // namespace

bool isRemoteCommand(Command command) {
    return command >= Command::play && command <= Command::checkAsJson;
}

bool isCheck(Command command) {
    return command == Command::check || command == Command::checkAsJson;
}

CommandLine parseCommandLine(std::span<char* const> arguments) {
    if (arguments.empty()) {
        return {};
    }
    if (isRestored(arguments)) {
        return {.command = Command::background};
    }
    const std::string_view first = arguments[0];
    const std::size_t equals = first.find('=');
    const std::string_view name = first == "-h" ? "--help" : first.substr(0, equals);
    const Option* const option = std::ranges::find(kOptions, name, &Option::name);
    if (option == std::end(kOptions)) {
        return unknownOption(name);
    }
    std::vector<std::string_view> rest(arguments.begin() + 1, arguments.end());
    if (equals != std::string_view::npos) {
        rest.insert(rest.begin(), first.substr(equals + 1));
    }
    const std::size_t needed = option->argument.empty() ? 0 : 1;
    if (option->command == Command::check && rest == std::vector<std::string_view>{"--json"}) {
        return {.command = Command::checkAsJson};
    }
    if (option->command == Command::allowMicrophone) {
        return microphoneAnswer(rest);
    }
    if (rest.size() < needed) {
        return invalid(std::string(name) + " needs the name of " +
                       (option->command == Command::selectTheme ? "a theme" : "an event") +
                       "; --list shows them.");
    }
    if (rest.size() > needed) {
        return invalid(quoted(rest[needed]) + " is too much after " + std::string(name) + ".");
    }
    return {.command = option->command, .argument = std::string(needed == 0 ? "" : rest[0])};
}

std::string usage() {
    constexpr std::size_t kHelpColumn = 27;
    std::string text =
        "chimewerk [OPTION]\n"
        "Plays a short sound when something happens to the computer. Runs in the tray;\n"
        "started once more, it shows its dashboard.\n";
    for (const Option& option : kOptions) {
        std::string line = "  " + std::string(option.name);
        line.append(option.argument.empty() ? "" : " ").append(option.argument);
        line.resize(std::max(line.size() + 1, kHelpColumn), ' ');
        text += line.append(option.help) + "\n";
    }
    return text;
}

}  // namespace chimewerk
