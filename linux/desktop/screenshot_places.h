// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "monitors/screenshot_monitor.h"

namespace chimewerk {

/// Returns where desktops store screenshots, and how their names begin: Desktop, Pictures, the
/// folder for screenshots in Pictures, and the folder that is set in Spectacle. Folder and names
/// are also known in the language of the session, from the desktops' own translations.
///
/// `translations` is the folder of the message catalogues. The C library's locale must have been
/// set. Main thread only.
std::vector<ScreenshotFolder> screenshotFolders(
    const std::string& translations = "/usr/share/locale");

}  // namespace chimewerk
