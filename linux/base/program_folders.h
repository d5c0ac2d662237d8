#pragma once

#include <string>

namespace chimewerk {

/// Where the program finds what belongs to it: beside itself, in the layout of an installation, so that it
/// can be installed, or built, anywhere. Empty when the program's own place cannot be told.
struct ProgramFolders {
    /// The sounds: share/chimewerk/sounds beside the folder of the program.
    std::string sounds;
    /// The modules: lib/chimewerk there.
    std::string modules;
    /// The pages for users: share/doc/chimewerk there.
    std::string pages;
};

ProgramFolders findProgramFolders();

}  // namespace chimewerk
