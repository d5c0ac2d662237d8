// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace chimewerk::synth {

/// Writes 16-bit mono samples at 48 kHz as a WAV file, which appears under its name only when it is
/// complete. Throws std::runtime_error with the file and the reason.
void writeWav(const std::filesystem::path& path, const std::vector<std::int16_t>& samples);

}  // namespace chimewerk::synth
