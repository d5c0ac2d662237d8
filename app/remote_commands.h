// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "app/check_table.h"
#include "app/options/command_line.h"
#include "platform/remote_control.h"

namespace chimewerk {

/// What a command prints, and the exit status of its process.
struct CommandResult {
    int status = 0;
    /// For the standard output; whole lines.
    std::string output = {};
    /// For the standard error output; whole lines.
    std::string errors = {};
};

/// Carries out such a command. `view` is how a check is printed.
CommandResult carryOutRemotely(const CommandLine& line, RemoteControl& program,
                               const CheckView& view);

/// Returns the state as a table of the events, at most 80 columns wide unless a name is long, and
/// the themes below it.
std::string listOf(const RemoteState& state);

}  // namespace chimewerk
