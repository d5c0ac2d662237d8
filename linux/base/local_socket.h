// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <string>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Connects to a local socket and returns its non-blocking descriptor; none if nobody listens there.
FileDescriptor connectLocally(const std::string& path);

/// Returns the process that listens at the other end of a local socket; 0 if it is unknown.
pid_t peerOf(int socket);

}  // namespace chimewerk
