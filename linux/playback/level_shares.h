// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace chimewerk {

/// Frames in a block; levels and gains are per block (5 ms).
inline constexpr std::size_t kLevelBlock = 240;

/// Returns the highest absolute sample of each block; the last block may be shorter.
std::vector<float> levelsOf(std::span<const float> stereo);

/// Divides the range from -1 to 1 among sounds that play at once, so that their sum stays in it.
/// `sounds` holds the levels of each sound from one instant on, the sound that started first being
/// the first. Returns a gain for each of these blocks, from 0 to 1.
///
/// A sound that plays alone is not changed unless it exceeds the range by itself, nor are sounds
/// that fit in side by side. Otherwise the sound that started last keeps its level up to half of
/// the range, and beyond that what the others leave; those share the rest. So a sound never starts
/// at less than half of its level.
///
/// A sound may in truth play three blocks earlier or four blocks later than stated.
std::vector<std::vector<float>> shareRange(std::span<const std::span<const float>> sounds);

/// Lowers gains where they would change so fast from one block to the next that it would be heard
/// as a distortion.
void smoothGains(std::span<float> gains);

/// Applies one gain per block, interpolated in between. No block gets more than its own gain.
void applyGains(std::span<float> stereo, std::span<const float> gains);

}  // namespace chimewerk
