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

/// An open sound file whose head is decoded, so that even a long one can start at once. The rest is
/// read from the file and decoded piece by piece, on the thread that calls `readRest()`. A file that
/// has lost its end, or is changed meanwhile, plays as far as it can be read.
class SoundFile {
public:
    /// Returns null if `path` is not a regular file, has no known format or no frame of sound. Never
    /// waits, as opening a FIFO would.
    static std::unique_ptr<SoundFile> open(const Decoders& decoders, const std::string& path);

    /// The start of the sound, or all of it if it is short, in the output form.
    const std::vector<float>& head() const { return head_; }
    /// Returns whether the head is the whole sound.
    bool headIsAll() const { return headIsAll_; }
    /// The length of the whole sound in seconds, at most a day. That of a long file is what the file
    /// says, or an estimate.
    double seconds() const { return seconds_; }

    /// Writes the frames after those that have been read so far and returns their number; fewer
    /// than fit only at the end. One thread at a time; may wait for the disk.
    std::size_t readRest(std::span<float> stereo);

private:
    SoundFile(FileDescriptor file, std::uint64_t size);
    bool decodeHead(const Decoders& decoders);
    void close();

    FileDescriptor file_;
    ByteStream stream_;                  // Of the file.
    std::unique_ptr<PcmReader> reader_;  // Of the stream; null when all has been read.
    std::vector<float> head_;
    bool headIsAll_ = false;
    double seconds_ = 0;
};

}  // namespace chimewerk
