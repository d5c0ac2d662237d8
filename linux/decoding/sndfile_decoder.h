// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "linux/decoding/decoder.h"

namespace chimewerk {

/// Opens WAV, AIFF, FLAC and Ogg. Returns null if it cannot read the file, which must outlive
/// the decoder.
std::unique_ptr<Decoder> openSndfileDecoder(ByteStream& file);

}  // namespace chimewerk
