// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/clock.h"

namespace chimewerk {

/// The machine's wall clock.
class SystemClock final : public Clock {
public:
    WallTime now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace chimewerk
