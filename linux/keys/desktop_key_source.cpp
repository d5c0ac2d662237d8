// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/desktop_key_source.h"

#include <algorithm>

#include "linux/keys/evdev_key_source.h"
#include "linux/keys/x11_key_source.h"

namespace chimewerk {

namespace {

std::unique_ptr<KeySource> evdev(EpollMainQueue& queue, const SessionEnvironment& /*environment*/) {
    return std::make_unique<EvdevKeySource>(queue);
}

std::unique_ptr<KeySource> x11(EpollMainQueue& queue, const SessionEnvironment& environment) {
    return environment.isX11() ? std::make_unique<X11KeySource>(queue, environment.display)
                               : nullptr;
}

/// In order of preference. Each returns null if it cannot work in this kind of session.
constexpr std::unique_ptr<KeySource> (*kWays[])(EpollMainQueue&, const SessionEnvironment&) = {
    evdev, x11};

}  // namespace

DesktopKeySource::DesktopKeySource(EpollMainQueue& queue, const SessionEnvironment& environment) {
    for (const auto way : kWays) {
        if (auto source = way(queue, environment)) {
            sources_.push_back(std::move(source));
        }
    }
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
