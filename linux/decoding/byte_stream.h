// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace chimewerk {

/// The bytes of an open file, read through a small buffer. The stream ends where the file cannot be
/// read or has become shorter. Used by one thread at a time.
class ByteStream {
public:
    /// `descriptor` must be a regular file of `size` bytes and outlive the stream.
    ByteStream(int descriptor, std::uint64_t size);

    std::int64_t size() const { return size_; }
    std::int64_t position() const { return position_; }

    /// Moves the position by `offset` from the start, the position or the end, as `whence` says
    /// like in `lseek()`, but not beyond the start or the end. Returns the new position.
    std::int64_t seek(std::int64_t offset, int whence);
    /// Fills `target` and returns the number of bytes; fewer only at the end of the stream.
    std::size_t read(std::span<std::byte> target);

    /// Makes the position the start of the stream.
    void startHere();
    /// Ends the stream after this many more bytes have been read from the file.
    void setAllowance(std::int64_t bytes) { allowance_ = bytes; }

private:
    static constexpr std::size_t kBufferSize = std::size_t{16} * 1024;

    bool fill();

    const int descriptor_;
    std::int64_t start_ = 0;  // The stream's start in the file.
    std::int64_t size_;
    std::int64_t position_ = 0;
    std::int64_t allowance_ = std::numeric_limits<std::int64_t>::max();
    std::int64_t bufferAt_ = 0;  // The position of the buffer's first byte.
    std::int64_t buffered_ = 0;
    std::array<std::byte, kBufferSize> buffer_;
};

}  // namespace chimewerk
