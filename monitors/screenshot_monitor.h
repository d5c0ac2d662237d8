// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/delayed_call.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Lists folders and reports changes of their contents. Main thread only.
class FolderSource {
public:
    /// Reports changes until it is destroyed. Must not be destroyed within its own callback.
    class Stream {
    public:
        virtual ~Stream() = default;
    };

    virtual ~FolderSource() = default;

    /// Returns the names directly inside `folder`, in no order; empty if it cannot be listed.
    virtual std::vector<std::string> list(const std::string& folder) const = 0;

    /// Calls `onChange` on the main thread soon after a name has appeared in `folder` or
    /// disappeared, or after the folder itself has been created, removed or replaced; it need not
    /// exist yet. Several changes may share a call, and a call may come without a change. Returns
    /// null if the folder cannot be watched at all.
    virtual std::unique_ptr<Stream> watch(const std::string& folder,
                                          std::function<void()> onChange) = 0;
};

/// Reports new screenshot files in the folders where desktops store them. Main thread only.
class ScreenshotMonitor {
public:
    /// `folders` are absolute paths. Each is checked on its own: a screenshot that is moved from
    /// one to another is new there.
    ScreenshotMonitor(MainQueue& queue, FolderSource& source,
                      const std::vector<std::string>& folders);

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
        std::string path;
        std::set<std::string> knownFiles = {};
        std::unique_ptr<DelayedCall> look = nullptr;
        std::unique_ptr<FolderSource::Stream> stream = nullptr;  // Destroyed before `look`.
    };

    static bool isShot(std::string_view name);
    std::set<std::string> shotsIn(const Folder& folder) const;
    void check(Folder& folder);

    MainQueue& queue_;
    FolderSource& source_;
    // Not resized after construction: the streams refer to its elements.
    std::vector<Folder> folders_;
};

}  // namespace chimewerk
