// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The module that hears keys from event devices.
#include <memory>
#include <string>

#include "linux/evdev/evdev_key_source.h"
#include "linux/keys/desktop_key_source.h"

extern "C" chimewerk::ReportingKeySource* CHIMEWERK_EVDEV_FUNCTION(chimewerk::EpollMainQueue& queue,
                                                                   const std::string& display);

chimewerk::ReportingKeySource* CHIMEWERK_EVDEV_FUNCTION(chimewerk::EpollMainQueue& queue,
                                                        const std::string& display) {
    return new chimewerk::EvdevKeySource(queue, display);
}
