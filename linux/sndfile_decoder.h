#pragma once

#include <memory>
#include <span>

#include "linux/decoder.h"

namespace chimewerk {

/// WAV, AIFF, MP3 and what else libsndfile knows; null when it does not know the bytes.
std::unique_ptr<Decoder> openSndfileDecoder(std::span<const std::byte> bytes);

}  // namespace chimewerk
