// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "monitors/coalescer.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Lists folders and reports changes of their contents. Main thread only.
class FolderSource {
public:
    /// Reports changes until it is destroyed. Must not be destroyed from within the call that
    /// it makes.
    class Stream {
    public:
        virtual ~Stream() = default;
    };

    virtual ~FolderSource() = default;

    /// The names directly inside `folder`, in no order; none when it cannot be listed.
    virtual std::vector<std::string> list(const std::string& folder) const = 0;

    /// Calls `onChange` on the main thread soon after a name has come into `folder` or left it, and
    /// after the folder itself has come, gone or been replaced; it need not exist. Several changes
    /// may share a call, and a call may come without a change. Null when the folder cannot be
    /// watched at all.
    virtual std::unique_ptr<Stream> watch(const std::string& folder,
                                          std::function<void()> onChange) = 0;
};

/// Reports new screenshot files in the folders where desktops put them. Main thread only.
class ScreenshotMonitor {
public:
    /// `folders` are absolute paths. Each is judged by itself: a screenshot that is moved from one
    /// to the other is new there.
    ScreenshotMonitor(MainQueue& queue, FolderSource& source,
                      const std::vector<std::string>& folders);

    /// A new screenshot file appeared: once per look at a folder, however many files there are.
    std::function<void()> onScreenshot;

    /// Takes what lies in the folders as known and begins to watch them. Call it once
    /// before `stop()`.
    void start();

    /// Ends the watching. What is known stays known.
    void stop();

    /// Checks every folder for new screenshots. Reported changes lead to a check within 1.5 s.
    void checkForNew();

private:
    struct Folder {
        std::string path;
        std::set<std::string> knownFiles = {};
        std::unique_ptr<Coalescer> coalescer = nullptr;
        std::unique_ptr<FolderSource::Stream> stream =
            nullptr;  // ends before the coalescer that it signals
    };

    static bool isShot(std::string_view name);
    std::set<std::string> shotsIn(const Folder& folder) const;
    void check(Folder& folder);

    MainQueue& queue_;
    FolderSource& source_;
    std::vector<Folder> folders_;  // never grows: the streams refer to its elements
};

}  // namespace chimewerk
