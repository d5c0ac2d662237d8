// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/first_windows.h"

#include <set>
#include <utility>

namespace chimewerk {

FirstWindows::FirstWindows(Dependencies dependencies) : deps_(std::move(dependencies)) {}

void FirstWindows::begin(const std::vector<Window>& list) {
    ownerOf_.clear();
    owners_.clear();
    addWindows(list);
    for (auto& [owner, state] : owners_) {
        state.isDecided = true;
    }
}

void FirstWindows::update(const std::vector<Window>& list) {
    removeWindows(list);
    for (const auto& [owner, window] : addWindows(list)) {
        deps_.onFirstWindow(owner, window);
    }
}

/// Records new windows and returns the processes that have their first window for the user now.
std::vector<std::pair<FirstWindows::Owner, FirstWindows::Window>> FirstWindows::addWindows(
    const std::vector<Window>& list) {
    std::vector<Window> added;
    for (const Window window : list) {
        if (!ownerOf_.contains(window)) {
            added.push_back(window);
        }
    }
    std::vector<std::pair<Owner, Window>> newcomers;
    if (added.empty()) {
        return newcomers;
    }
    const std::vector<Facts> facts = deps_.factsOf(added);
    for (std::size_t i = 0; i < added.size() && i < facts.size(); ++i) {
        if (!facts[i].owner) {
            continue;
        }
        ownerOf_.emplace(added[i], *facts[i].owner);
        OwnerState& owner = owners_[*facts[i].owner];
        ++owner.windows;
        if (facts[i].role != Role::secondary && !std::exchange(owner.isDecided, true) &&
            facts[i].role == Role::application) {
            newcomers.emplace_back(*facts[i].owner, added[i]);
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
        --owners_.at(entry.second).windows;
        return true;
    });
    std::erase_if(owners_, [&](const auto& entry) {
        return entry.second.windows == 0 && !deps_.isAlive(entry.first);
    });
}

}  // namespace chimewerk
