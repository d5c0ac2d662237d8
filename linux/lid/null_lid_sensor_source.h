// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "monitors/lid_angle_monitor.h"

namespace chimewerk {

/// For machines without a lid sensor: never opens, never calls a handler.
class NullLidSensorSource final : public LidSensorSource {
public:
    bool open(AngleHandler /*onAngle*/, FoundHandler /*onFound*/) override { return false; }
    void close() override {}
};

}  // namespace chimewerk
