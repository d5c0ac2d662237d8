// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "platform/hardware_query.h"

namespace chimewerk {

/// The lid-angle event can work on 64-bit ARM machines and wherever there is a sensor in the hinge.
class LinuxHardwareQuery final : public HardwareQuery {
public:
    /// Queries this machine. Looks for a sensor at each query.
    LinuxHardwareQuery();
    /// `machine` is the kernel's name for the processor, such as "x86_64".
    LinuxHardwareQuery(std::string machine, std::function<bool()> hasHingeSensor);

    /// Whether there is a sensor in the hinge now, even if it may not be opened.
    static bool hasHingeSensor();

    bool supportsLidAngle() const override;

private:
    const std::string machine_;
    const std::function<bool()> hasHingeSensor_;
};

}  // namespace chimewerk
