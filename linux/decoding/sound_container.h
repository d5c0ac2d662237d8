// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace chimewerk {

/// What the headers of a sound file say, before anything is decoded.
struct SoundContainer {
    /// The file is shorter than its headers say: its end has been lost.
    bool truncated = false;
    /// Where the sound starts, in bytes: after the tags at the file's start, which may
    /// contain pictures.
    std::uint64_t audioStart = 0;
    /// An MP3: a sequence of frames, with or without a table of contents before them.
    bool isMp3 = false;
    /// The length in seconds in the table of contents; 0 if there is none.
    double seconds = 0;
    /// Where the table of contents states the number of bytes, big-endian in 32 bits; 0 if it
    /// does not.
    std::uint64_t sizeFieldAt = 0;
};

/// Reads `target.size()` bytes at `offset` and returns their number; fewer only at the file's end.
using ReadAt = std::function<std::size_t(std::uint64_t offset, std::span<std::byte> target)>;

/// Inspects the headers of a WAV, AIFF, M4A or MP3 file of `size` bytes; other formats yield the
/// defaults. Reads only a few small pieces of any file.
SoundContainer inspectSoundContainer(const ReadAt& readAt, std::uint64_t size);

}  // namespace chimewerk
