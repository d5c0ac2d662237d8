// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// All paths are absolute and have no trailing slash; empty if there is no home folder. Environment
/// variables that hold a relative path count as not set.

/// Returns $HOME, else the home folder of the user's account.
std::string homeFolder();
/// Returns $XDG_DATA_HOME, else .local/share in the home folder.
std::string xdgDataHome();
/// Returns $XDG_CONFIG_HOME, else .config in the home folder.
std::string xdgConfigHome();
/// Returns the data folder of the user and those in $XDG_DATA_DIRS; earlier ones take precedence.
std::vector<std::string> xdgDataFolders();
/// Returns the configuration folder of the user and those in $XDG_CONFIG_DIRS, in the same order.
std::vector<std::string> xdgConfigFolders();
/// Returns the user folder with this name in capitals, such as "DESKTOP", from the file
/// user-dirs.dirs in the configuration folder; else the folder `fallback` in the home folder.
std::string xdgUserFolder(std::string_view name, std::string_view fallback);

}  // namespace chimewerk
