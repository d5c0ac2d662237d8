// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/first_windows.h"

#include <set>
#include <utility>

namespace chimewerk {

FirstWindows::FirstWindows(Dependencies dependencies) : deps_(std::move(dependencies)) {}

void FirstWindows::begin(const std::vector<Window>& list) {
    ownerOf_.clear();
    windowsOf_.clear();
    addWindows(list);
}

void FirstWindows::update(const std::vector<Window>& list) {
    removeWindows(list);
    for (const Owner owner : addWindows(list)) {
        deps_.onFirstWindow(owner);
    }
}

/// Records new windows and returns the processes that were unknown before and now have a window for
/// the user.
std::vector<FirstWindows::Owner> FirstWindows::addWindows(const std::vector<Window>& list) {
    std::vector<Window> added;
    for (const Window window : list) {
        if (!ownerOf_.contains(window)) {
            added.push_back(window);
        }
    }
    std::vector<Owner> newcomers;
    if (added.empty()) {
        return newcomers;
    }
    const std::vector<Facts> facts = deps_.factsOf(added);
    for (std::size_t i = 0; i < added.size() && i < facts.size(); ++i) {
        if (!facts[i].owner) {
            continue;
        }
        ownerOf_.emplace(added[i], *facts[i].owner);
        const auto [entry, isNew] = windowsOf_.try_emplace(*facts[i].owner, 0);
        ++entry->second;
        if (isNew && facts[i].isForUser) {
            newcomers.push_back(*facts[i].owner);
        }
    }
    return newcomers;
}

void FirstWindows::removeWindows(const std::vector<Window>& list) {
    const std::set<Window> present(list.begin(), list.end());
    std::erase_if(ownerOf_, [&](const auto& entry) {
        if (present.contains(entry.first)) {
            return false;
        }
        --windowsOf_.at(entry.second);
        return true;
    });
    std::erase_if(windowsOf_, [&](const auto& entry) {
        return entry.second == 0 && !deps_.isAlive(entry.first);
    });
}

}  // namespace chimewerk
