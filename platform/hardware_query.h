// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace chimewerk {

/// What kind of machine this is. Main thread only.
class HardwareQuery {
public:
    virtual ~HardwareQuery() = default;

    /// Returns whether the lid-angle event can work on this machine.
    virtual bool supportsLidAngle() const = 0;
};

}  // namespace chimewerk
