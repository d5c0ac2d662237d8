// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// Runs a shell command, waits for its end and returns its exit status.
int runShell(const std::string& command);
/// Runs a shell command and returns its output without trailing newlines.
std::string outputOfShell(const std::string& command);

}  // namespace chimewerk
