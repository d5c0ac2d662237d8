// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/screenshot_places.h"

#include <libintl.h>

#include <algorithm>
#include <string_view>

#include "linux/base/file_reading.h"
#include "linux/base/text_parts.h"
#include "linux/desktop/xdg_folders.h"

namespace chimewerk {

namespace {

/// A text of a program, as its translators know it.
struct Message {
    const char* program;
    const char* text;
};

constexpr Message kFolderNames[] = {{"gnome-shell", "Screenshots"}, {"spectacle", "Screenshots"}};
constexpr Message kFileNames[] = {{"gnome-shell", "Screenshot from %s"},
                                  {"gnome-shell", "Screenshot From %s"},
                                  {"gnome-screenshot", "Screenshot from %s.%s"},
                                  {"xfce4-screenshooter", "Screenshot"}};

std::string translated(const Message& message, const std::string& translations) {
    bindtextdomain(message.program, translations.c_str());
    bind_textdomain_codeset(message.program, "UTF-8");
    return dgettext(message.program, message.text);
}

/// Adds what a pattern for names has before its first placeholder: "%s" or "<yyyy>".
void addBeginning(const std::string& pattern, std::vector<std::string>& beginnings) {
    const std::string beginning = pattern.substr(0, pattern.find_first_of("%<"));
    if (!beginning.empty() && std::ranges::find(beginnings, beginning) == beginnings.end()) {
        beginnings.push_back(beginning);
    }
}

/// Returns the folder of a file URL or of a path, either of which may begin with $HOME.
std::string folderOf(std::string_view value) {
    constexpr std::string_view kScheme = "file://";
    if (value.starts_with(kScheme)) {
        value.remove_prefix(kScheme.size());
    }
    constexpr std::string_view kHome = "$HOME";
    std::string path;
    if (value.starts_with(kHome)) {
        path = homeFolder();
        value.remove_prefix(kHome.size());
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '%' && i + 2 < value.size()) {
            path += static_cast<char>(
                std::stoi("0x0" + std::string(value.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            path += value[i];
        }
    }
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path.starts_with('/') ? path : "";
}

/// What the user has set in Spectacle; empty where nothing is set.
struct SpectacleSettings {
    std::string folder;
    std::string pattern;
};

SpectacleSettings spectacleSettings() {
    SpectacleSettings settings;
    const std::string text = readText(xdgConfigHome() + "/spectaclerc").value_or("");
    for (const std::string_view line : split(text, '\n')) {
        const std::size_t equals = std::min(line.find('='), line.size());
        // "[$e]" behind a key says that its value has variables.
        const std::string_view key = line.substr(0, std::min(line.find("[$e]"), equals));
        const std::string_view value = line.substr(std::min(equals + 1, line.size()));
        if (key == "defaultSaveLocation" || key == "imageSaveLocation") {
            settings.folder = folderOf(value);
        } else if (key == "saveFilenameFormat" || key == "imageFilenameTemplate") {
            settings.pattern = value;
        }
    }
    return settings;
}

}  // namespace

std::vector<ScreenshotFolder> screenshotFolders(const std::string& translations) {
    const std::string pictures = xdgUserFolder("PICTURES", "Pictures");
    if (pictures.empty()) {
        return {};
    }
    const SpectacleSettings spectacle = spectacleSettings();
    std::vector<std::string> beginnings{"Screenshot"};
    addBeginning(spectacle.pattern, beginnings);
    for (const Message& message : kFileNames) {
        addBeginning(translated(message, translations), beginnings);
    }
    std::vector<ScreenshotFolder> folders{{.path = xdgUserFolder("DESKTOP", "Desktop")},
                                          {.path = pictures, .beginnings = beginnings}};
    std::vector<std::string> names{"Screenshots"};
    for (const Message& message : kFolderNames) {
        names.push_back(translated(message, translations));
    }
    for (const std::string& name : names) {
        folders.push_back({.path = pictures + "/" + name, .holdsOnlyShots = true});
    }
    if (!spectacle.folder.empty()) {
        folders.push_back({.path = spectacle.folder, .beginnings = beginnings});
    }
    return folders;
}

}  // namespace chimewerk
