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
        sources_.push_back(std::make_unique<X11KeySource>(queue, environment.display));
    }
    sources_.push_back(std::make_unique<EvdevKeySource>(queue, inputFolder));
}

bool DesktopKeySource::trusted() {
    return std::ranges::any_of(sources_, [](const auto& source) { return source->trusted(); });
}

std::unique_ptr<KeyTap> DesktopKeySource::createTap(KeyTapCallbacks callbacks) {
    for (const auto& source : sources_) {
        if (auto tap = source->createTap(callbacks)) {
            return tap;
        }
    }
    return nullptr;
}

}  // namespace chimewerk
