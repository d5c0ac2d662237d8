// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/desktop_key_source.h"

#include <utility>

#include "linux/keys/x11_key_source.h"

namespace chimewerk {

DesktopKeySource::DesktopKeySource(EpollMainQueue& queue, const SessionEnvironment& environment,
                                   MakeSource makeEventDevices)
    : x11_(environment.isX11() ? std::make_unique<X11KeySource>(queue, environment.display)
                               : nullptr),
      makeEventDevices_(std::move(makeEventDevices)) {}

ReportingKeySource& DesktopKeySource::eventDevices() {
    if (eventDevices_ == nullptr) {
        eventDevices_ = makeEventDevices_();
    }
    return *eventDevices_;
}

bool DesktopKeySource::trusted() {
    return (x11_ != nullptr && x11_->trusted()) || eventDevices().trusted();
}

std::unique_ptr<KeyTap> DesktopKeySource::createTap(KeyTapCallbacks callbacks) {
    auto tap = x11_ == nullptr ? nullptr : x11_->createTap(callbacks);
    return tap != nullptr ? std::move(tap) : eventDevices().createTap(std::move(callbacks));
}

SourceReport DesktopKeySource::report() {
    return x11_ != nullptr && x11_->trusted() ? x11_->report() : eventDevices().report();
}

}  // namespace chimewerk
