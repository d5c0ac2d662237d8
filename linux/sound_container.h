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
    /// The length in seconds of an MP3 that has a table of contents, else 0.
    double seconds = 0;
    /// An MP3 without one: only a count of its frames, all the way to the end, tells its length.
    bool lengthIsUntold = false;
};

/// Reads up to `target.size()` bytes at `offset` and tells how many there were; fewer than asked for only at
/// the end.
using ReadAt = std::function<std::size_t(std::uint64_t offset, std::span<std::byte> target)>;

/// Looks at the headers of a WAV, AIFF, M4A or MP3 file of `size` bytes; of others it knows nothing. Reads a
/// few small pieces only, whatever the file holds.
SoundContainer inspectSoundContainer(const ReadAt& readAt, std::uint64_t size);

}  // namespace chimewerk
