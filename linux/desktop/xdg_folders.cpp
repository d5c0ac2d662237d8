// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/xdg_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "linux/base/file_reading.h"
#include "linux/base/text_parts.h"

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

}  // namespace

std::string homeFolder() {
    std::string home = absoluteFromEnvironment("HOME");
    if (home.empty()) {
        if (const passwd* const entry = getpwuid(getuid());
            entry != nullptr && entry->pw_dir != nullptr) {
            home = entry->pw_dir;
        }
    }
    return home;
}

namespace {

std::string folder(const char* variable, const char* belowHome) {
    std::string path = absoluteFromEnvironment(variable);
    if (path.empty()) {
        if (const std::string home = homeFolder(); !home.empty()) {
            path = home + belowHome;
        }
    }
    return path;
}

/// Returns `first`, if it is not empty, and the absolute paths in a list with colons.
std::vector<std::string> folders(std::string first, const char* variable, const char* standard) {
    std::vector<std::string> paths;
    if (!first.empty()) {
        paths.push_back(std::move(first));
    }
    const char* const value = std::getenv(variable);
    for (const std::string_view path :
         split(value == nullptr || *value == '\0' ? standard : value, ':')) {
        if (path.starts_with('/')) {
            paths.emplace_back(path);
        }
    }
    return paths;
}

/// Returns the path of a quoted value in user-dirs.dirs: absolute, or below "$HOME". Returns none
/// for any other value.
std::optional<std::string> unquoted(std::string_view value) {
    constexpr std::string_view kHome = "$HOME/";
    if (!value.starts_with('"')) {
        return std::nullopt;
    }
    value.remove_prefix(1);
    std::string path;
    if (value.starts_with(kHome)) {
        path = homeFolder() + "/";
        value.remove_prefix(kHome.size());
    } else if (!value.starts_with('/')) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < value.size() && value[i] != '"'; ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
        }
        path += value[i];
    }
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path.starts_with('/') ? std::optional(path) : std::nullopt;
}

}  // namespace

std::string xdgDataHome() {
    return folder("XDG_DATA_HOME", "/.local/share");
}
std::string xdgConfigHome() {
    return folder("XDG_CONFIG_HOME", "/.config");
}

std::vector<std::string> xdgDataFolders() {
    return folders(xdgDataHome(), "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}
std::vector<std::string> xdgConfigFolders() {
    return folders(xdgConfigHome(), "XDG_CONFIG_DIRS", "/etc/xdg");
}

std::string xdgUserFolder(std::string_view name, std::string_view fallback) {
    std::string path = homeFolder();
    if (path.empty()) {
        return path;
    }
    path.append("/").append(fallback);
    const std::string settings = readText(xdgConfigHome() + "/user-dirs.dirs").value_or("");
    const std::string key = "XDG_" + std::string(name) + "_DIR=";
    for (std::string_view line : split(settings, '\n')) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (line.starts_with(key)) {
            path = unquoted(line.substr(key.size())).value_or(path);
        }
    }
    return path;
}

}  // namespace chimewerk
