#include "linux/xdg_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace chimewerk {

namespace {

std::string absoluteFromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    std::string path = value == nullptr || value[0] != '/' ? "" : value;
    while (path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

std::string homeFolder() {
    std::string home = absoluteFromEnvironment("HOME");
    if (home.empty()) {
        if (const passwd* const entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) {
            home = entry->pw_dir;
        }
    }
    return home;
}

std::string folder(const char* variable, const char* belowHome) {
    std::string path = absoluteFromEnvironment(variable);
    if (path.empty()) {
        if (const std::string home = homeFolder(); !home.empty()) {
            path = home + belowHome;
        }
    }
    return path;
}

}  // namespace

std::string xdgDataHome() {
    return folder("XDG_DATA_HOME", "/.local/share");
}
std::string xdgConfigHome() {
    return folder("XDG_CONFIG_HOME", "/.config");
}

}  // namespace chimewerk
