// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace chimewerk {

class AtomicFile;

/// A text file that always holds a complete text, even after a crash or on a full disk. If it is a
/// symbolic link, the link is kept and its target is read and replaced. One thread at a time.
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

    /// Renames the existing file to a free name beside it. If that fails, `replace()` tries again
    /// before it writes. A file that was set aside is never overwritten.
    void setAside() { mustSetAside_ = !moveAside(); }

    /// Makes the next `replace()` first copy the current file to a free name beside it.
    void copyAsideFirst() { copyFirst_ = true; }

    /// Replaces the contents by `text`, creates missing folders, and returns when all is on the
    /// disk. On failure returns false and keeps the old file. Readers, even after a crash, find
    /// either the old text or the new one.
    bool replace(std::string_view text);

private:
    bool moveAside() const;
    bool copyAside() const;
    bool takePlace(AtomicFile& file, const std::string& target) const;

    const std::string path_;
    /// Whether the existing file must be set aside before anything is written.
    bool mustSetAside_ = false;
    bool copyFirst_ = false;
};

}  // namespace chimewerk
