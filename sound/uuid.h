// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// A new random (version 4) UUID in canonical upper-case text, 36 characters. Any thread.
std::string randomUuid();

}  // namespace chimewerk
