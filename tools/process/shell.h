// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// Runs a command of the shell to its end and returns its exit status.
int runShell(const std::string& command);
/// Runs a command of the shell and returns what it prints, without the newlines at the end.
std::string outputOfShell(const std::string& command);

}  // namespace chimewerk
