#include "linux/storage/settings_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

namespace {

namespace fs = std::filesystem;

/// More than this is no settings file, and is not taken into memory.
constexpr std::size_t kLargestFile = std::size_t{256} << 20;

/// No more files than this are set aside.
constexpr int kMostNames = 10000;

std::string nameAside(const std::string& path, int number) {
    return path + ".damaged-" + std::to_string(number);
}

/// The file that a chain of symbolic links ends at, whether it exists or not; `path` itself when the chain
/// has no end.
std::string followed(const std::string& path) {
    constexpr int kMostLinks = 40;
    fs::path target = path;
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const fs::path next = fs::read_symlink(target, error);
        if (error) {
            return target.string();
        }
        target = target.parent_path() / next;
    }
    return path;
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

/// What unfinished writes of this file are called, before the part that is random.
std::string temporaryPrefix(const std::string& path) {
    return std::string(".").append(path, path.rfind('/') + 1).append(".~");
}

/// Makes the folder and those above it, for the user alone.
bool makeFolder(const std::string& folder) {
    constexpr mode_t kUserOnly = 0700;
    if (folder.empty() || mkdir(folder.c_str(), kUserOnly) == 0 || errno == EEXIST) {
        return true;
    }
    return errno == ENOENT && makeFolder(folderOf(folder)) &&
           (mkdir(folder.c_str(), kUserOnly) == 0 || errno == EEXIST);
}

std::optional<std::string> readAll(const FileDescriptor& file, std::size_t expectedSize) {
    std::string text(expectedSize + 1, '\0');
    std::size_t length = 0;
    while (true) {
        const ssize_t count = ::read(file.get(), text.data() + length, text.size() - length);
        if (count < 0 && errno != EINTR) {
            return std::nullopt;
        }
        if (count == 0) {
            text.resize(length);
            return text;
        }
        length += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (length > kLargestFile) {
            return std::nullopt;
        }
        if (length == text.size()) {
            text.resize(2 * length);
        }
    }
}

bool writeAll(const FileDescriptor& file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(file.get(), text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return fsync(file.get()) == 0;
}

/// A new file beside `target` with this text, on the disk, with the permissions of `target` if that exists.
/// Its path, empty on failure.
std::string writeBeside(const std::string& target, std::string_view text) {
    std::string path = folderOf(target) + "/" + temporaryPrefix(target) + "XXXXXX";
    const FileDescriptor file(mkostemp(path.data(), O_CLOEXEC));
    if (!file) {
        return {};
    }
    struct stat present {};
    if (stat(target.c_str(), &present) == 0 && S_ISREG(present.st_mode)) {
        // The text is worth more than its permissions: a file system without any is no reason not to write.
        static_cast<void>(fchmod(file.get(), present.st_mode & 0777U));
    }
    if (!writeAll(file, text)) {
        unlink(path.c_str());
        return {};
    }
    return path;
}

/// Renames, but never over something that is there already: then errno is EEXIST.
bool renameToFreeName(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // A file system that cannot promise it.
    struct stat ignored {};
    if (lstat(to.c_str(), &ignored) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

SettingsFile::Contents SettingsFile::read() const {
    // Without waiting for a writer, in case it is a pipe.
    const FileDescriptor file(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file) {
        const bool absent = errno == ENOENT || errno == ENOTDIR;
        return {absent ? Finding::absent : Finding::unreadable, {}};
    }
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {Finding::unreadable, {}};
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    auto text = size <= kLargestFile ? readAll(file, size) : std::nullopt;
    return text ? Contents{Finding::text, std::move(*text)} : Contents{Finding::unreadable, {}};
}

bool SettingsFile::replace(std::string_view text) {
    if (path_.empty()) {
        return true;
    }
    if (inTheWay_) {
        setAside();
        if (inTheWay_) {
            return false;
        }
    }
    if (copyFirst_) {
        if (!copyAside()) {
            return false;
        }
        copyFirst_ = false;
    }
    if (!std::exchange(swept_, true)) {
        removeLeftovers();
    }
    const std::string target = followed(path_);
    if (!makeFolder(folderOf(target))) {
        return false;
    }
    const std::string temporary = writeBeside(target, text);
    if (temporary.empty()) {
        return false;
    }
    if (!takePlace(temporary, target)) {
        unlink(temporary.c_str());
        return false;
    }
    return true;
}

bool SettingsFile::takePlace(const std::string& temporary, const std::string& target) const {
    bool placed = std::rename(temporary.c_str(), target.c_str()) == 0;
    if (!placed && errno == EISDIR && moveAside()) {
        placed = std::rename(temporary.c_str(), target.c_str()) == 0;
    }
    if (placed) {
        // The new name is on the disk once the folder is. A file system that cannot tell has done what it
        // can.
        const FileDescriptor folder(
            open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        static_cast<void>(fsync(folder.get()));
    }
    return placed;
}

bool SettingsFile::copyAside() const {
    const std::string target = followed(path_);
    std::error_code ignored;
    if (!fs::exists(target, ignored)) {
        return true;
    }
    for (int number = 1; number < kMostNames; ++number) {
        std::error_code error;
        const std::string copy = nameAside(target, number);
        if (fs::copy_file(target, copy, error)) {
            return true;
        }
        if (error != std::errc::file_exists) {
            fs::remove(copy, ignored);
            return false;
        }
    }
    return false;
}

bool SettingsFile::moveAside() const {
    // A link to a file stays, and the file goes; whatever else a link names is not ours to move, so the link
    // goes.
    const std::string target = followed(path_);
    struct stat status {};
    const bool regular = stat(target.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    const std::string& from = regular ? target : path_;
    for (int number = 1; number < kMostNames; ++number) {
        if (renameToFreeName(from, nameAside(from, number))) {
            return true;
        }
        if (errno != EEXIST) {
            return errno == ENOENT;
        }
    }
    return false;
}

/// Younger ones may be another session's, which is writing now.
void SettingsFile::removeLeftovers() const {
    const std::string target = followed(path_);
    const std::string prefix = temporaryPrefix(target);
    const auto oldest = fs::file_time_type::clock::now() - std::chrono::minutes(1);
    std::error_code error;
    for (fs::directory_iterator entry(folderOf(target), error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (entry->path().filename().string().starts_with(prefix) &&
            entry->is_regular_file(ignored) && entry->last_write_time(ignored) < oldest) {
            fs::remove(entry->path(), ignored);
        }
    }
}

}  // namespace chimewerk
