// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace chimewerk {

class AtomicFile;

/// A text file that holds one whole text at any moment, also after a crash or on a full disk. It
/// may be a symbolic link: the link stays, and the file that it leads to is read and replaced. One
/// thread at a time.
class SettingsFile {
public:
    enum class Finding {
        text,
        /// There is no file.
        absent,
        /// Not a regular file, not readable, or too large.
        unreadable,
    };
    struct Contents {
        Finding finding;
        std::string text;
    };

    /// `path` is absolute. With an empty path, the file is always absent and `replace()` does
    /// nothing and succeeds.
    explicit SettingsFile(std::string path) : path_(std::move(path)) {}

    /// Returns the contents of the file. Waits for the disk only, never for a pipe.
    Contents read() const;

    /// Renames what is there to a free name beside it. When that fails, `replace()` tries again
    /// before it writes. A file that has been set aside is never overwritten.
    void setAside() { mustSetAside_ = !moveAside(); }

    /// Makes the next `replace()` keep a copy of the present file beside it.
    void copyAsideFirst() { copyFirst_ = true; }

    /// Replaces the contents by `text`, creates missing folders, and returns once all is on the
    /// disk. On failure returns false and leaves the file as it was. A reader, or a program that
    /// starts after a crash, finds either the old text or the new one.
    bool replace(std::string_view text);

private:
    bool moveAside() const;
    bool copyAside() const;
    bool takePlace(AtomicFile& file, const std::string& target) const;

    const std::string path_;
    /// What is there must be set aside before anything is written.
    bool mustSetAside_ = false;
    bool copyFirst_ = false;
};

}  // namespace chimewerk
