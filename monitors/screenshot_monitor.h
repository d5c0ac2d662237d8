// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/delayed_call.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Identifies a file wherever it is moved within its file system.
struct FileIdentity {
    std::uint64_t device;
    std::uint64_t inode;
    /// When the file was made: an inode may be used again for another one. 0 if that is unknown.
    std::int64_t birthNanoseconds;
    auto operator<=>(const FileIdentity&) const = default;
};

/// Lists folders and reports changes of their contents. Main thread only.
class FolderSource {
public:
    /// `name` has appeared, disappeared or been replaced. Empty if any name may have, for example
    /// because the folder itself was created, removed or replaced.
    using Change = std::function<void(std::string_view name)>;

    /// Reports changes until it is destroyed. Must not be destroyed within its own callback.
    class Stream {
    public:
        virtual ~Stream() = default;
    };

    virtual ~FolderSource() = default;

    /// Returns the names directly inside `folder`, in no order; empty if it cannot be listed.
    virtual std::vector<std::string> list(const std::string& folder) const = 0;

    /// Returns which file has this name in the folder; none if there is none.
    virtual std::optional<FileIdentity> identify(const std::string& folder,
                                                 const std::string& name) const = 0;

    /// Calls `onChange` on the main thread soon after each change in `folder`, which need not exist
    /// yet. A call may come without a change. Returns null if the folder cannot be watched at all.
    virtual std::unique_ptr<Stream> watch(const std::string& folder, Change onChange) = 0;
};

/// A folder with screenshots, and which of its files are some: those that end in ".png" and begin
/// in one of these ways, or all that end in ".png".
struct ScreenshotFolder {
    /// Absolute.
    std::string path;
    std::vector<std::string> beginnings = {"Screenshot"};
    bool holdsOnlyShots = false;
};

/// Reports new screenshot files in the folders where desktops store them. Main thread only.
class ScreenshotMonitor {
public:
    /// If two of the folders are the same, a screenshot of either kind counts there. A screenshot
    /// that is moved from one folder to another is not new.
    ScreenshotMonitor(MainQueue& queue, FolderSource& source,
                      const std::vector<ScreenshotFolder>& folders);

    /// Called when a check of a folder found new screenshot files; once, however many.
    std::function<void()> onScreenshot;

    /// Takes the present files as known and starts watching the folders. Call once before `stop()`.
    void start();

    /// Stops watching. Known files stay known.
    void stop();

    /// Checks every folder for new screenshots. A reported change leads to a check within 1.5 s.
    void checkForNew();

private:
    struct Folder {
        ScreenshotFolder place;
        std::map<std::string, FileIdentity> knownFiles = {};
        /// The names that were reported since the last look.
        std::set<std::string> changed = {};
        std::unique_ptr<DelayedCall> look = nullptr;
        std::unique_ptr<FolderSource::Stream> stream = nullptr;  // Destroyed before `look`.
    };

    static bool isShot(const ScreenshotFolder& place, std::string_view name);
    void lookAtChanges(Folder& folder);
    /// Looks at every name. Returns whether there are new screenshots.
    bool lookAtAll(Folder& folder);
    /// Updates what is known of one name. Returns whether it is a new screenshot.
    bool update(Folder& folder, const std::string& name);
    bool isMoved(const Folder& to, const FileIdentity& file) const;
    void report(bool anyNew) const;

    MainQueue& queue_;
    FolderSource& source_;
    // Not resized after construction: the streams refer to its elements.
    std::vector<Folder> folders_;
    /// Screenshots that have left a folder lately, each with that folder's path.
    std::deque<std::pair<FileIdentity, std::string>> left_;
};

}  // namespace chimewerk
