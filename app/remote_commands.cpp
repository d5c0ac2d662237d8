// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/remote_commands.h"

#include <cmath>

#include "app/text_table.h"

namespace chimewerk {

namespace {

std::string percent(double volume) {
    return std::to_string(std::lround(volume * 100)) + " %";
}

/// Returns the name of the file, or the text itself if it is no path.
std::string lastPart(const std::string& sound) {
    return sound.substr(sound.rfind('/') + 1);
}

}  // namespace

CommandResult carryOutRemotely(const CommandLine& line, RemoteControl& program,
                               const CheckView& view) {
    CommandResult result;
    RemoteControl::Refusal refusal;
    switch (line.command) {
        case Command::play:
            refusal = program.play(line.argument);
            break;
        case Command::mute:
        case Command::unmute:
            refusal = program.setMuted(line.command == Command::mute);
            break;
        case Command::toggleMute: {
            bool isMuted = false;
            refusal = program.toggleMuted(isMuted);
            result.output = isMuted ? "muted\n" : "not muted\n";
            break;
        }
        case Command::selectTheme:
            refusal = program.setTheme(line.argument);
            break;
        case Command::enable:
        case Command::disable:
            refusal = program.setEnabled(line.argument, line.command == Command::enable);
            break;
        case Command::check:
        case Command::checkAsJson: {
            std::vector<RemoteCheck> checks;
            refusal = program.check(checks);
            result.output =
                line.command == Command::check ? checkTable(checks, view) : checkJson(checks, view);
            break;
        }
        default: {
            RemoteState state;
            refusal = program.readState(state);
            result.output = listOf(state);
        }
    }
    if (refusal) {
        return {.status = 1, .errors = "chimewerk: " + *refusal + "\n"};
    }
    return result;
}

std::string listOf(const RemoteState& state) {
    std::vector<std::vector<std::string>> rows{{"EVENT", "NAME", "", "VOLUME", "SOUND"}};
    for (const RemoteEvent& event : state.events) {
        rows.push_back({event.id, event.label, event.isEnabled ? "on" : "off",
                        percent(event.volume), lastPart(event.sound)});
    }
    std::string text = textTable(rows) + "\nThemes:";
    for (std::size_t i = 0; i < state.themes.size(); ++i) {
        text += (i == 0 ? " " : ", ") + state.themes[i];
    }
    text += "\nSelected: " + state.theme + "\n";
    return state.isMuted ? text + "Muted: chimewerk --unmute lets it sound again.\n" : text;
}

}  // namespace chimewerk
