// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/atomic_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace chimewerk {

namespace {

constexpr std::string_view kPrefix = ".chimewerk-unfinished-";

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Locks the file. Returns false if another program removed it as a leftover before the lock
/// was taken.
bool lockInPlace(int file) {
    struct stat status {};
    return flock(file, LOCK_EX) != 0 || fstat(file, &status) != 0 || status.st_nlink > 0;
}

void removeIfAbandoned(int folder, const char* name) {
    const FileDescriptor file(
        openat(folder, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
        unlinkat(folder, name, 0);
    }
}

}  // namespace

AtomicFile::AtomicFile(const std::string& folder, std::error_code& error) {
    error.clear();
    removeLeftovers(folder);
    do {
        path_ = folder + "/" + std::string(kPrefix) + "XXXXXX";
        file_ = FileDescriptor(mkostemp(path_.data(), O_CLOEXEC));
        if (!file_) {
            error = lastError();
            path_.clear();
            return;
        }
    } while (!lockInPlace(file_.get()));
}

AtomicFile::~AtomicFile() {
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
}

std::error_code AtomicFile::takePlace(const std::string& path) {
    if (std::rename(path_.c_str(), path.c_str()) != 0) {
        return lastError();
    }
    path_.clear();
    return {};
}

void AtomicFile::removeLeftovers(const std::string& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
    if (!entries) {
        return;
    }
    while (const dirent* const entry = readdir(entries.get())) {
        if (std::string_view(entry->d_name).starts_with(kPrefix)) {
            removeIfAbandoned(dirfd(entries.get()), entry->d_name);
        }
    }
}

}  // namespace chimewerk
