// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// Returns a new random (version 4) UUID as 36 characters in upper case. Any thread.
std::string randomUuid();

}  // namespace chimewerk
