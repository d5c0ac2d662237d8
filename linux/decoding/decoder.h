// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace chimewerk {

class M4aModule;

/// The first bytes of a file, or all of them. A decoder finds the file's end after them, but the
/// size that it is told is the whole file's.
struct VisibleFile {
    std::span<const std::byte> bytes;
    std::uint64_t size;
};

/// Decodes one sound from bytes in memory. Used by one thread at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Frames per second.
    virtual int rate() const = 0;
    /// Samples per frame, at least 1.
    virtual int channels() const = 0;
    /// The length in seconds that the file states, or else the length of the visible bytes; 0
    /// if unknown.
    virtual double seconds() const = 0;

    /// Decodes the next frames into `samples`, interleaved, nominally from -1 to 1, and returns
    /// their number. If that is less than fits, the sound has ended or its rest is damaged.
    virtual std::size_t read(std::span<float> samples) = 0;
};

/// Opens decoders for all known formats. Any thread.
class Decoders {
public:
    /// `moduleFolder` holds the module for M4A, which is loaded when the first such sound
    /// is opened.
    explicit Decoders(const std::string& moduleFolder);
    ~Decoders();

    /// Returns a decoder for the file, whose bytes must outlive it; null if the format is not known
    /// or the start is damaged.
    std::unique_ptr<Decoder> open(const VisibleFile& file) const;

private:
    std::unique_ptr<M4aModule> m4a_;
};

}  // namespace chimewerk
