#include "linux/storage/file_copy.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

namespace chimewerk {

namespace {

/// As much as a slow disk takes in a moment.
constexpr std::size_t kPiece = std::size_t{4} << 20;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

bool writeAll(int to, const std::byte* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(to, bytes, count);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        const auto done = static_cast<std::size_t>(written > 0 ? written : 0);
        bytes += done;
        count -= done;
    }
    return true;
}

/// Copies the next piece by way of this program's memory. The number of bytes, 0 at the end, -1 on failure.
ssize_t copyThroughMemory(int from, int to, std::vector<std::byte>& buffer) {
    buffer.resize(kPiece);
    ssize_t count = 0;
    do {
        count = read(from, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    return count > 0 && !writeAll(to, buffer.data(), static_cast<std::size_t>(count)) ? -1 : count;
}

/// What lies on the disk already need not be waited for at the end, when nobody can be asked to go on.
void bringToTheDisk(int to, off64_t begin, off64_t count) {
    sync_file_range(
        to, begin, count,
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
}

}  // namespace

std::error_code copyFile(int from, int to, const std::function<bool()>& goOn) {
    std::vector<std::byte> buffer;
    bool inTheKernel = true;
    off64_t done = 0;
    while (goOn()) {
        // The kernel cannot do it between all file systems, and says so in many ways; what is wrong with the
        // files themselves comes up again in the second attempt. It takes files whose size is not known
        // beforehand for empty.
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
        bringToTheDisk(to, done, count);
        done += count;
    }
    return std::make_error_code(std::errc::operation_canceled);
}

}  // namespace chimewerk
