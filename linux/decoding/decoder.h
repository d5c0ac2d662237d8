// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>

#include "linux/decoding/byte_stream.h"

namespace chimewerk {

class M4aModule;

/// Decodes one sound. The rate and channels never change; a sound that changes them ends there.
/// Used by one thread at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Frames per second.
    virtual int rate() const = 0;
    /// Samples per frame, at least 1.
    virtual int channels() const = 0;
    /// The length in seconds that the file states or that its size suggests; 0 if unknown. It may
    /// be any number.
    virtual double seconds() const = 0;

    /// Decodes the next frames into `samples`, interleaved, nominally -1 to 1, and returns their
    /// number. If fewer than fit, the sound has ended or the rest is damaged or lost: do not
    /// call again.
    virtual std::size_t read(std::span<float> samples) = 0;
};

/// Opens decoders for the known formats: WAV, AIFF, MP3, M4A, FLAC and Ogg. Any thread.
class Decoders {
public:
    /// `moduleFolder` holds the module for M4A, which is loaded when the first such sound
    /// is opened.
    explicit Decoders(const std::string& moduleFolder);
    ~Decoders();

    /// Returns a decoder for the file, which must outlive it; null if the format is unknown or the
    /// start is damaged.
    std::unique_ptr<Decoder> open(ByteStream& file) const;

private:
    std::unique_ptr<M4aModule> m4a_;
};

}  // namespace chimewerk
