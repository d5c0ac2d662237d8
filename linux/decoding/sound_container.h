#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace chimewerk {

/// What a sound file tells of itself before anything is decoded.
struct SoundContainer {
    /// The file is shorter than it says it is: the rest of it has been lost.
    bool truncated = false;
    /// Where the sound begins: behind the tags at the file's start, which may hold whole pictures.
    std::uint64_t audioStart = 0;
    /// An MP3: frame after frame, with or without a table of contents before them.
    bool isMp3 = false;
    /// The length in seconds as the table of contents tells it, 0 without one.
    double seconds = 0;
    /// Where the table of contents tells the number of bytes, big-endian in 32 bits; 0 when it does not.
    std::uint64_t sizeFieldAt = 0;
};

/// Reads up to `target.size()` bytes at `offset` and tells how many there were; fewer than asked for only at
/// the end.
using ReadAt = std::function<std::size_t(std::uint64_t offset, std::span<std::byte> target)>;

/// Looks at the headers of a WAV, AIFF, M4A or MP3 file of `size` bytes; of others it knows nothing. Reads a
/// few small pieces only, whatever the file holds.
SoundContainer inspectSoundContainer(const ReadAt& readAt, std::uint64_t size);

}  // namespace chimewerk
