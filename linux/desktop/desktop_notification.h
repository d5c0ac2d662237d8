// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// Shows a notification on the desktop, under the name and icon of the desktop entry `id`. Waits
/// for the session bus, a second at most; failures are silent.
void showDesktopNotification(const std::string& id, const std::string& summary,
                             const std::string& body);

}  // namespace chimewerk
