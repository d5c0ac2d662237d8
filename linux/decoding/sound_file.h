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
#include "linux/decoding/byte_stream.h"
#include "linux/decoding/decoder.h"
#include "linux/decoding/pcm_reader.h"

namespace chimewerk {

/// An open sound file whose head is decoded, so that even a long sound can start at once.
/// `readRest()` reads and decodes the rest piece by piece on the calling thread. A file that has
/// lost its end, or changes meanwhile, plays as far as it can be read.
class SoundFile {
public:
    /// Returns null if `path` is not a regular file, or has no known format or no frame of sound.
    /// Never blocks, as opening a FIFO would.
    static std::unique_ptr<SoundFile> open(const Decoders& decoders, const std::string& path);

    /// The start of the sound, or all of it if it is short, in the output form.
    const std::vector<float>& head() const { return head_; }
    /// Returns whether the head is the whole sound.
    bool headIsAll() const { return headIsAll_; }
    /// The length of the whole sound in seconds, at most a day. For a long file it is what the file
    /// states, or an estimate.
    double seconds() const { return seconds_; }

    /// Writes the next frames after the head and returns their number; fewer than fit only at the
    /// end. One thread at a time; may block on the disk.
    std::size_t readRest(std::span<float> stereo);

private:
    SoundFile(FileDescriptor file, std::uint64_t size);
    bool decodeHead(const Decoders& decoders);
    void close();

    FileDescriptor file_;
    ByteStream stream_;                  // Of the file.
    std::unique_ptr<PcmReader> reader_;  // Reads the stream; null when everything has been read.
    std::vector<float> head_;
    bool headIsAll_ = false;
    double seconds_ = 0;
};

}  // namespace chimewerk
