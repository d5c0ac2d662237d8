// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/file_copy.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>

namespace chimewerk {

namespace {

/// A slow disk writes this much in about a second.
constexpr std::size_t kPiece = std::size_t{4} << 20;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Copies the next piece through `buffer`. Returns the number of bytes, 0 at the end, -1
/// on failure.
ssize_t copyThroughMemory(int from, int to, std::string& buffer) {
    buffer.resize(kPiece);
    ssize_t count = 0;
    do {
        count = read(from, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    const auto size = static_cast<std::size_t>(count > 0 ? count : 0);
    return writeAll(to, std::string_view(buffer).substr(0, size)) ? count : -1;
}

/// Waits until this part has been written, so that the final fsync, which cannot be cancelled,
/// is short.
void flushPart(int to, off64_t begin, off64_t count) {
    sync_file_range(
        to, begin, count,
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
}

}  // namespace

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

std::error_code copyFile(int from, int to, const std::function<bool()>& goOn) {
    std::string buffer;
    bool inTheKernel = true;
    off64_t done = 0;
    while (goOn()) {
        // The kernel cannot copy between all file systems, and reports that in many ways; a real
        // fault shows again in the second attempt. It also treats a file of unknown size as empty.
        ssize_t count = inTheKernel ? copy_file_range(from, nullptr, to, nullptr, kPiece, 0) : 0;
        if (count <= 0) {
            inTheKernel = false;
            count = copyThroughMemory(from, to, buffer);
        }
        if (count < 0) {
            return lastError();
        }
        if (count == 0) {
            return fsync(to) == 0 ? std::error_code() : lastError();
        }
        flushPart(to, done, count);
        done += count;
    }
    return std::make_error_code(std::errc::operation_canceled);
}

}  // namespace chimewerk
