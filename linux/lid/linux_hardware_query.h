// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "platform/hardware_query.h"

namespace chimewerk {

/// The lid-angle event can work on 64-bit ARM machines and on machines with a hinge sensor.
class LinuxHardwareQuery final : public HardwareQuery {
public:
    /// Uses this machine's name, and searches for a sensor at each query.
    LinuxHardwareQuery();
    /// `machine` is the kernel's name for the processor, such as "x86_64".
    LinuxHardwareQuery(std::string machine, std::function<bool()> hasHingeSensor);

    /// Returns whether there is a hinge sensor now, even if it cannot be opened.
    static bool hasHingeSensor();

    bool supportsLidAngle() const override;

private:
    const std::string machine_;
    const std::function<bool()> hasHingeSensor_;
};

}  // namespace chimewerk
