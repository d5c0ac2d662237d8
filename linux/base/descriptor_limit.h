// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace chimewerk {

/// How many descriptors the program must be able to open: it keeps about 40, and some more while
/// sounds play.
inline constexpr unsigned long kNeededDescriptors = 64;

/// Raises this process's limit of open descriptors to the usual 1024, or as far as the system
/// allows. Returns the limit.
unsigned long raiseDescriptorLimit();

}  // namespace chimewerk
