#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// The user's folders, absolute and without a slash at the end; the empty string when there is no home
/// folder. Values of the environment that are not absolute count as not set.

/// $XDG_DATA_HOME, else .local/share in the home folder.
std::string xdgDataHome();
/// $XDG_CONFIG_HOME, else .config in the home folder.
std::string xdgConfigHome();
/// A folder of the user's own by its name in capitals, such as "DESKTOP", as the file user-dirs.dirs in the
/// configuration folder places it; `fallback`, a name in the home folder, when it does not say.
std::string xdgUserFolder(std::string_view name, std::string_view fallback);
/// Where desktops put screenshots: the Desktop folder, the Pictures folder, and the "Screenshots" in the
/// latter.
std::vector<std::string> screenshotFolders();

}  // namespace chimewerk
