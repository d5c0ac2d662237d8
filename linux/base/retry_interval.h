// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/main_queue.h"

namespace chimewerk {

/// The time between two attempts to reach a server or folder whose return nothing announces.
inline constexpr Seconds kRetryInterval{3.0};

}  // namespace chimewerk
