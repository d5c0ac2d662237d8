// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "linux/decoding/decoder.h"

namespace chimewerk {

/// Opens WAV, AIFF, MP3 and everything else that libsndfile can read. Returns null if it cannot
/// read the file, whose bytes must outlive the decoder.
std::unique_ptr<Decoder> openSndfileDecoder(const VisibleFile& file);

}  // namespace chimewerk
