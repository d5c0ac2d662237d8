// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <system_error>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// A file that is written under a temporary name and then renamed in one step: readers see the old
/// file or the whole new one. The destructor removes it unless it has been renamed. It is locked
/// while it is being written, so temporary files without a lock are leftovers of killed programs.
/// One thread at a time.
class AtomicFile {
public:
    /// Removes the leftovers in `folder` and creates an empty file there, accessible to the user
    /// alone. On failure `error` gives the reason, and no other member may be called.
    AtomicFile(const std::string& folder, std::error_code& error);
    AtomicFile(AtomicFile&&) = delete;
    ~AtomicFile();

    /// Open for reading and writing.
    int descriptor() const { return file_.get(); }
    /// The temporary name.
    const std::string& path() const { return path_; }

    /// Renames the file to `path`, which must be in the same folder. Replaces a file or a link
    /// (not the link's target), never a folder. Does not wait for the disk. On failure nothing
    /// has changed.
    std::error_code takePlace(const std::string& path);

    /// Removes the temporary files in `folder` that no program is writing.
    static void removeLeftovers(const std::string& folder);

private:
    FileDescriptor file_;
    /// Empty once the file has been renamed.
    std::string path_;
};

}  // namespace chimewerk
