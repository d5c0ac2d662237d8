// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/desktop_key_source.h"

#include <algorithm>

#include "linux/keys/evdev_key_source.h"
#include "linux/keys/x11_key_source.h"

namespace chimewerk {

DesktopKeySource::DesktopKeySource(EpollMainQueue& queue, const SessionEnvironment& environment,
                                   const std::string& inputFolder) {
    if (environment.isX11()) {
        add(std::make_unique<X11KeySource>(queue, environment.display));
    }
    add(std::make_unique<EvdevKeySource>(queue, environment.waylandDisplay, inputFolder));
}

bool DesktopKeySource::trusted() {
    return std::ranges::any_of(rows_, [](const Row& row) { return row.source->trusted(); });
}

std::unique_ptr<KeyTap> DesktopKeySource::createTap(KeyTapCallbacks callbacks) {
    for (const Row& row : rows_) {
        if (auto tap = row.source->createTap(callbacks)) {
            return tap;
        }
    }
    return nullptr;
}

SourceReport DesktopKeySource::report() {
    const auto works =
        std::ranges::find_if(rows_, [](const Row& row) { return row.source->trusted(); });
    return (works == rows_.end() ? rows_.back() : *works).reporter->report();
}

}  // namespace chimewerk
