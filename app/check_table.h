// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/remote_control.h"

namespace chimewerk {

/// What a check is printed with.
struct CheckView {
    /// Whether the program has been running before, rather than been started for the check.
    bool isRunning = true;
    /// The home folder, printed as "~" in the table; empty for none.
    std::string home = {};
};

// Both return whole lines.

/// Returns a table of the events and the sound output, and below it, for those that are on, what is
/// missing and what to do about it. 80 columns wide unless a word is longer.
std::string checkTable(const std::vector<RemoteCheck>& checks, const CheckView& view);

/// Returns the same facts as a JSON object.
std::string checkJson(const std::vector<RemoteCheck>& checks, const CheckView& view);

/// Returns a time span in its largest unit: "12 s", "3 min", "5 h", "2 d"; "-" if there is none.
std::string spanText(std::optional<double> seconds);

}  // namespace chimewerk
