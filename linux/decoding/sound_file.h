// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "linux/decoding/decoder.h"
#include "linux/decoding/pcm_reader.h"
#include "linux/decoding/sound_container.h"

namespace chimewerk {

/// An open sound file whose head is decoded, so that even a long one can start at once.
/// `readRest()` reads and decodes what follows the head, on the thread that calls it.
class SoundFile {
public:
    /// Returns null if `path` is not a regular file, or one that is empty, has 1 GiB or more, is
    /// truncated, has no known format or no frame of sound. Never waits, as opening a FIFO would.
    static std::unique_ptr<SoundFile> open(const Decoders& decoders, const std::string& path);

    /// The start of the sound, or all of it if it is short, in the output form.
    const std::vector<float>& head() const { return head_; }
    /// Returns whether the head is the whole sound.
    bool headIsAll() const { return headIsAll_; }
    /// The length of the whole sound in seconds; an estimate for a long MP3 without a table
    /// of contents.
    double seconds() const { return seconds_; }

    /// Writes the frames after those that have been read so far and returns their number; fewer
    /// than fit only at the end. One thread at a time; may wait for the disk.
    std::size_t readRest(std::span<float> stereo);

private:
    SoundFile(const Decoders& decoders, FileDescriptor file, std::uint64_t size);
    bool decodeHead();
    bool decodeHeadFrom(std::size_t visible);
    bool begin(std::size_t visible);
    void patchTableOfContents(std::size_t bytes);
    bool readBytes(std::size_t count);
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> target) const;
    bool wholeIsVisible() const { return bytes_.size() == size_; }

    const Decoders& decoders_;
    FileDescriptor file_;  // Closed when all bytes have been read.
    const std::uint64_t size_;
    SoundContainer container_;
    std::vector<std::byte> bytes_;  // The file's first bytes, or all of them.
    std::unique_ptr<PcmReader> reader_;
    std::vector<float> head_;
    bool headIsAll_ = false;
    double seconds_ = 0;
};

}  // namespace chimewerk
