// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/byte_stream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace chimewerk {

ByteStream::ByteStream(int descriptor, std::uint64_t size)
    : descriptor_(descriptor), size_(static_cast<std::int64_t>(size)) {}

std::int64_t ByteStream::seek(std::int64_t offset, int whence) {
    const std::int64_t base = whence == SEEK_CUR ? position_ : whence == SEEK_END ? size_ : 0;
    position_ = base + std::clamp(offset, -base, size_ - base);
    return position_;
}

std::size_t ByteStream::read(std::span<std::byte> target) {
    std::size_t done = 0;
    while (done < target.size()) {
        if ((position_ < bufferAt_ || position_ >= bufferAt_ + buffered_) && !fill()) {
            break;
        }
        const auto from = static_cast<std::size_t>(position_ - bufferAt_);
        const std::size_t count =
            std::min(target.size() - done, static_cast<std::size_t>(buffered_) - from);
        std::ranges::copy(std::span(buffer_).subspan(from, count), target.subspan(done).begin());
        done += count;
        position_ += static_cast<std::int64_t>(count);
    }
    return done;
}

void ByteStream::startHere() {
    start_ += position_;
    size_ -= position_;
    bufferAt_ -= position_;
    position_ = 0;
}

/// Reads the bytes at the position into the buffer. Returns false if there are none.
bool ByteStream::fill() {
    const std::int64_t wanted =
        std::min({std::int64_t{kBufferSize}, size_ - position_, allowance_});
    bufferAt_ = position_;
    buffered_ = 0;
    while (wanted > 0) {
        const ssize_t got = pread(descriptor_, buffer_.data(), static_cast<std::size_t>(wanted),
                                  start_ + position_);
        if (got >= 0 || errno != EINTR) {
            buffered_ = std::max<ssize_t>(got, 0);
            break;
        }
    }
    allowance_ -= buffered_;
    return buffered_ > 0;
}

}  // namespace chimewerk
