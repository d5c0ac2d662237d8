#pragma once

#include <string>

namespace chimewerk {

/// The user's folders, absolute and without a slash at the end; the empty string when there is no home
/// folder. Values of the environment that are not absolute count as not set.

/// $XDG_DATA_HOME, else .local/share in the home folder.
std::string xdgDataHome();
/// $XDG_CONFIG_HOME, else .config in the home folder.
std::string xdgConfigHome();

}  // namespace chimewerk
