#pragma once

#include <memory>

#include "linux/decoding/decoder.h"

namespace chimewerk {

/// WAV, AIFF, MP3 and what else libsndfile knows; null when it does not know the file.
std::unique_ptr<Decoder> openSndfileDecoder(const VisibleFile& file);

}  // namespace chimewerk
