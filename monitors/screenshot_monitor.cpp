// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/screenshot_monitor.h"

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

constexpr Seconds kLatency{1.5};
/// How many screenshots are remembered after they have left a folder.
constexpr std::size_t kMaxLeft = 256;

}  // namespace

ScreenshotMonitor::ScreenshotMonitor(MainQueue& queue, FolderSource& source,
                                     const std::vector<ScreenshotFolder>& folders)
    : queue_(queue), source_(source) {
    for (const ScreenshotFolder& place : folders) {
        const auto same = std::ranges::find_if(
            folders_, [&](const Folder& folder) { return folder.place.path == place.path; });
        if (same == folders_.end()) {
            folders_.push_back({.place = place});
            continue;
        }
        // Two of the folders may be the same in the user's configuration.
        same->place.holdsOnlyShots |= place.holdsOnlyShots;
        same->place.beginnings.insert(same->place.beginnings.end(), place.beginnings.begin(),
                                      place.beginnings.end());
    }
}

void ScreenshotMonitor::start() {
    for (Folder& folder : folders_) {
        folder.changed.clear();
        lookAtAll(folder);
        folder.look = std::make_unique<DelayedCall>(queue_, kLatency,
                                                    [this, &folder] { lookAtChanges(folder); });
        folder.stream = source_.watch(folder.place.path, [&folder](std::string_view name) {
            folder.changed.emplace(name);
            folder.look->schedule();
        });
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
        report(lookAtAll(folder));
    }
}

bool ScreenshotMonitor::isShot(const ScreenshotFolder& place, std::string_view name) {
    return name.ends_with(".png") &&
           (place.holdsOnlyShots ||
            std::ranges::any_of(place.beginnings, [name](const std::string& beginning) {
                return name.starts_with(beginning);
            }));
}

void ScreenshotMonitor::lookAtChanges(Folder& folder) {
    const std::set<std::string> changed = std::exchange(folder.changed, {});
    if (changed.contains("")) {
        report(lookAtAll(folder));
        return;
    }
    bool anyNew = false;
    for (const std::string& name : changed) {
        anyNew |= update(folder, name);
    }
    report(anyNew);
}

bool ScreenshotMonitor::lookAtAll(Folder& folder) {
    std::set<std::string> names;
    for (const auto& [name, file] : folder.knownFiles) {
        names.insert(name);  // It may have left.
    }
    for (std::string& name : source_.list(folder.place.path)) {
        names.insert(std::move(name));
    }
    bool anyNew = false;
    for (const std::string& name : names) {
        anyNew |= update(folder, name);
    }
    return anyNew;
}

bool ScreenshotMonitor::update(Folder& folder, const std::string& name) {
    if (!isShot(folder.place, name)) {
        return false;
    }
    const auto file = source_.identify(folder.place.path, name);
    if (!file) {
        if (const auto left = folder.knownFiles.extract(name)) {
            left_.emplace_back(left.mapped(), folder.place.path);
        }
        if (left_.size() > kMaxLeft) {
            left_.pop_front();
        }
        return false;
    }
    const bool isNew = folder.knownFiles.insert_or_assign(name, *file).second;
    return isNew && !isMoved(folder, *file);
}

bool ScreenshotMonitor::isMoved(const Folder& to, const FileIdentity& file) const {
    const auto isElsewhere = [&](const Folder& from) {
        return &from != &to && std::ranges::any_of(from.knownFiles, [&](const auto& known) {
            return known.second == file;
        });
    };
    return std::ranges::any_of(folders_, isElsewhere) ||
           std::ranges::any_of(left_, [&](const auto& left) {
               return left.first == file && left.second != to.place.path;
           });
}

void ScreenshotMonitor::report(bool anyNew) const {
    if (anyNew && onScreenshot) {
        onScreenshot();
    }
}

}  // namespace chimewerk
