// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chimewerk {

/// Returns the format, a whole sentence, with the value in place of its placeholder `{}`.
std::string filled(std::string_view format, std::string_view value);

/// Returns in words how often an event has been triggered.
std::string counterText(std::int64_t triggerCount);

// Numbers are truncated to whole ones, not rounded.

/// Returns a volume from 0.0 to 1.0 as "55%".
std::string volumeText(float volume);
/// Returns an angle as "90°".
std::string degreesText(float degrees);
/// Returns a charge as "20%".
std::string percentText(float percent);

/// Returns the last name in a path, without slashes that follow it: "b.wav" for "/a/b.wav".
std::string lastPathComponent(std::string_view path);

}  // namespace chimewerk
