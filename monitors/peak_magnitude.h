// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>

namespace chimewerk {

/// The largest magnitude among the samples, 0 when there are none. What is not a number is passed
/// over; what is infinite counts as the largest number, so that a level computed from it can fall
/// again. Any thread.
float peakMagnitude(std::span<const float> samples);

}  // namespace chimewerk
