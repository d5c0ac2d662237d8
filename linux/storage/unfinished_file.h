#pragma once

#include <string>
#include <system_error>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// A file that is being written under a name of its own in the folder it is meant for, and that is removed
/// unless it has taken its place. What a killed program leaves of one is told by its name and by nobody
/// holding its lock. One thread at a time.
class UnfinishedFile {
public:
    /// Makes an empty one. `error` tells why there is none; then nothing else may be called.
    UnfinishedFile(const std::string& folder, std::error_code& error);
    UnfinishedFile(UnfinishedFile&&) = delete;
    ~UnfinishedFile();

    int descriptor() const { return file_.get(); }
    const std::string& path() const { return path_; }

    /// Takes the name `path` in the same folder, in one step: whatever file or link has that name goes, what
    /// the link leads to stays. A folder is never replaced.
    std::error_code takePlace(const std::string& path);

    /// Removes those in the folder that no program is writing any more.
    static void removeLeftovers(const std::string& folder);

private:
    FileDescriptor file_;
    /// Empty when it has taken its place.
    std::string path_;
};

}  // namespace chimewerk
