// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chimewerk {

/// How often an event has been triggered, in words.
std::string counterText(std::int64_t triggerCount);

// Numbers are cut off to whole ones, not rounded.

/// A volume from 0.0 to 1.0 as "55%".
std::string volumeText(float volume);
/// An angle as "90°".
std::string degreesText(float degrees);
/// A charge as "20%".
std::string percentText(float percent);

/// The last name in a path, without the slashes that may follow it: "b.wav" for "/a/b.wav".
std::string lastPathComponent(std::string_view path);

}  // namespace chimewerk
