// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// For builds without Plasma's protocols.
#include "linux/launches/plasma_app_launches.h"

namespace chimewerk {

class PlasmaAppLaunches::Link {};

PlasmaAppLaunches::PlasmaAppLaunches(EpollMainQueue& /*queue*/, const std::string& /*display*/,
                                     ToplevelLaunches::OnFirstWindow /*onFirstWindow*/,
                                     Seconds /*retryInterval*/) {}

PlasmaAppLaunches::~PlasmaAppLaunches() = default;

bool PlasmaAppLaunches::isHeard() const {
    return link_ != nullptr;
}

}  // namespace chimewerk
