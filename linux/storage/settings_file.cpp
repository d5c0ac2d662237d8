// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/settings_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "linux/base/file_descriptor.h"
#include "linux/base/file_reading.h"
#include "linux/storage/atomic_file.h"
#include "linux/storage/file_copy.h"

namespace chimewerk {

namespace {

namespace fs = std::filesystem;

/// A larger file cannot be a settings file, and is not read.
constexpr std::size_t kLargestFile = std::size_t{256} << 20;

/// The largest number of files that can be set aside.
constexpr int kMaxNames = 10000;

std::string nameAside(const std::string& path, int number) {
    return path + ".damaged-" + std::to_string(number);
}

/// Returns the file at the end of a chain of symbolic links, whether or not it exists; `path`
/// itself if the links form a circle.
std::string resolveLinks(const std::string& path) {
    constexpr int kMaxLinks = 40;
    fs::path target = path;
    for (int i = 0; i < kMaxLinks; ++i) {
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

/// Creates the folder and its parents, accessible to the user alone.
bool makeFolder(const std::string& folder) {
    constexpr mode_t kUserOnly = 0700;
    if (folder.empty() || mkdir(folder.c_str(), kUserOnly) == 0 || errno == EEXIST) {
        return true;
    }
    return errno == ENOENT && makeFolder(folderOf(folder)) &&
           (mkdir(folder.c_str(), kUserOnly) == 0 || errno == EEXIST);
}

/// Writes the text to the disk. Gives the file the permissions of `target`, if that exists.
bool write(const AtomicFile& file, std::string_view text, const std::string& target) {
    struct stat present {};
    if (stat(target.c_str(), &present) == 0 && S_ISREG(present.st_mode)) {
        // Failure is ignored: some file systems have no permissions.
        static_cast<void>(fchmod(file.descriptor(), present.st_mode & 0777U));
    }
    return writeAll(file.descriptor(), text) && fsync(file.descriptor()) == 0;
}

/// Renames unless `to` exists; then errno is EEXIST.
bool renameToFreeName(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // The file system cannot do this in one step.
    struct stat ignored {};
    if (lstat(to.c_str(), &ignored) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

SettingsFile::Contents SettingsFile::read() const {
    // O_NONBLOCK: if this is a pipe, does not wait for a writer.
    const FileDescriptor file(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file) {
        const bool absent = errno == ENOENT || errno == ENOTDIR;
        return {absent ? Finding::absent : Finding::unreadable, {}};
    }
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {Finding::unreadable, {}};
    }
    auto text = static_cast<std::size_t>(status.st_size) <= kLargestFile
                    ? readText(file.get(), kLargestFile + 1)
                    : std::nullopt;
    const bool isComplete = text && text->size() <= kLargestFile;
    return isComplete ? Contents{Finding::text, std::move(*text)}
                      : Contents{Finding::unreadable, {}};
}

bool SettingsFile::replace(std::string_view text) {
    if (path_.empty()) {
        return true;
    }
    if (mustSetAside_) {
        setAside();
        if (mustSetAside_) {
            return false;
        }
    }
    if (copyFirst_) {
        if (!copyAside()) {
            return false;
        }
        copyFirst_ = false;
    }
    const std::string target = resolveLinks(path_);
    if (!makeFolder(folderOf(target))) {
        return false;
    }
    std::error_code error;
    AtomicFile file(folderOf(target), error);
    return !error && write(file, text, target) && takePlace(file, target);
}

bool SettingsFile::takePlace(AtomicFile& file, const std::string& target) const {
    std::error_code error = file.takePlace(target);
    if (error == std::errc::is_a_directory && moveAside()) {
        error = file.takePlace(target);
    }
    if (error) {
        return false;
    }
    // The new name is on the disk once the folder is. Some file systems cannot flush a folder.
    const FileDescriptor folder(open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    static_cast<void>(fsync(folder.get()));
    return true;
}

bool SettingsFile::copyAside() const {
    const std::string target = resolveLinks(path_);
    std::error_code ignored;
    if (!fs::exists(target, ignored)) {
        return true;
    }
    for (int number = 1; number < kMaxNames; ++number) {
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
    // If the path is a link to a file, the file is moved; if it is a link to anything else, the
    // link is moved.
    const std::string target = resolveLinks(path_);
    struct stat status {};
    const bool regular = stat(target.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    const std::string& from = regular ? target : path_;
    for (int number = 1; number < kMaxNames; ++number) {
        if (renameToFreeName(from, nameAside(from, number))) {
            return true;
        }
        if (errno != EEXIST) {
            return errno == ENOENT;
        }
    }
    return false;
}

}  // namespace chimewerk
