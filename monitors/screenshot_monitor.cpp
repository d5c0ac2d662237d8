// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/screenshot_monitor.h"

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

constexpr Seconds kLatency{1.5};

}  // namespace

ScreenshotMonitor::ScreenshotMonitor(MainQueue& queue, FolderSource& source,
                                     const std::vector<std::string>& folders)
    : queue_(queue), source_(source) {
    for (const std::string& path : folders) {
        // Two of the folders may be the same in the user's configuration.
        if (std::ranges::find(folders_, path, &Folder::path) == folders_.end()) {
            folders_.push_back({.path = path});
        }
    }
}

void ScreenshotMonitor::start() {
    for (Folder& folder : folders_) {
        folder.knownFiles = shotsIn(folder);
        folder.look =
            std::make_unique<DelayedCall>(queue_, kLatency, [this, &folder] { check(folder); });
        folder.stream = source_.watch(folder.path, [&folder] { folder.look->schedule(); });
    }
}

void ScreenshotMonitor::stop() {
    for (Folder& folder : folders_) {
        folder.stream = nullptr;
        folder.look = nullptr;
    }
}

void ScreenshotMonitor::checkForNew() {
    for (Folder& folder : folders_) {
        check(folder);
    }
}

bool ScreenshotMonitor::isShot(std::string_view name) {
    return name.starts_with("Screenshot") && name.ends_with(".png");
}

std::set<std::string> ScreenshotMonitor::shotsIn(const Folder& folder) const {
    std::set<std::string> shots;
    for (std::string& name : source_.list(folder.path)) {
        if (isShot(name)) {
            shots.insert(std::move(name));
        }
    }
    return shots;
}

void ScreenshotMonitor::check(Folder& folder) {
    std::set<std::string> current = shotsIn(folder);
    const bool anyNew = !std::ranges::includes(folder.knownFiles, current);
    folder.knownFiles = std::move(current);
    if (anyNew && onScreenshot) {
        onScreenshot();
    }
}

}  // namespace chimewerk
