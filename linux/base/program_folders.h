// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// The folders that belong to the program, relative to its executable in the layout of an
/// installation. It can therefore be installed or built anywhere. All are empty if the path of the
/// executable is unknown.
struct ProgramFolders {
    /// Sounds: share/chimewerk/sounds under the installation prefix.
    std::string sounds;
    /// Modules: lib/chimewerk.
    std::string modules;
    /// Pages for users: share/chimewerk.
    std::string pages;
};

/// Returns the folders of the running program.
ProgramFolders findProgramFolders();

}  // namespace chimewerk
