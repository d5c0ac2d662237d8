// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>

namespace chimewerk {

/// Returns the largest magnitude among the samples, 0 if there are none. NaN is skipped;
/// infinity counts as the largest finite number, so that a level computed from it can fall
/// again. Any thread.
float peakMagnitude(std::span<const float> samples);

}  // namespace chimewerk
