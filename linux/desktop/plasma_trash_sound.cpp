// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/plasma_trash_sound.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "linux/base/file_reading.h"
#include "linux/base/text_parts.h"
#include "linux/desktop/xdg_folders.h"
#include "linux/storage/atomic_file.h"

namespace chimewerk {

namespace {

constexpr std::string_view kFileName = "/plasma_workspace.notifyrc";
constexpr std::string_view kGroup = "[Event/Trash: emptied]";
constexpr std::string_view kAction = "Action=";
/// What the user had chosen, or nothing where that was left to Plasma.
constexpr std::string_view kBefore = "ChimewerkActionBefore=";
/// Also what Plasma does where the user has chosen nothing.
constexpr std::string_view kSound = "Sound";
constexpr std::string_view kNothing = "None";

/// Returns the actions without the sound; they are separated by "|".
std::string soundless(const std::string& actions) {
    std::string kept;
    for (const std::string_view action : split(actions, '|')) {
        if (action != kSound) {
            kept.append(kept.empty() ? "" : "|").append(action);
        }
    }
    return kept.empty() ? std::string(kNothing) : kept;
}

bool hasSound(const std::string& actions) {
    return ("|" + actions + "|").find("|" + std::string(kSound) + "|") != std::string::npos;
}

/// The text of the file around the group, and the lines of the group.
struct Settings {
    std::string before;
    std::vector<std::string> group;
    std::string after;
    /// The administrator has fixed the group or its action.
    bool isLocked = false;

    explicit Settings(const std::string& text) {
        std::string* outside = &before;
        bool isInside = false;
        for (const std::string_view line : split(text, '\n')) {
            if (line.starts_with('[')) {
                isInside = line.starts_with(kGroup);
                isLocked |= line == "[$i]" || (isInside && line != kGroup);
            }
            if (!isInside) {
                outside->append(line).append("\n");
            } else if (line.starts_with('[')) {
                outside = &after;
            } else {
                isLocked |= line.starts_with("Action[");
                group.emplace_back(line);
            }
        }
    }

    std::string text() const {
        if (std::ranges::all_of(group, &std::string::empty)) {
            const bool hasGap = before.ends_with("\n\n") && after.empty();
            return before.substr(0, before.size() - (hasGap ? 1 : 0)) + after;
        }
        std::string text = before;
        if (!text.empty() && !text.ends_with("\n\n")) {
            text += '\n';
        }
        text += std::string(kGroup) + "\n";
        for (const std::string& line : group) {
            text += line + "\n";
        }
        return text + after;
    }

    std::optional<std::string> value(std::string_view key) const {
        const auto line = find(key);
        return line == group.end() ? std::nullopt : std::optional(line->substr(key.size()));
    }
    void set(std::string_view key, const std::string& value) {
        remove(key);
        group.insert(group.begin(), std::string(key) + value);
    }
    void remove(std::string_view key) {
        std::erase_if(group, [key](const std::string& line) { return line.starts_with(key); });
    }

private:
    std::vector<std::string>::const_iterator find(std::string_view key) const {
        return std::ranges::find_if(
            group, [key](const std::string& line) { return line.starts_with(key); });
    }
};

bool isPlasmaInstalled() {
    const auto folders = xdgDataFolders();
    return std::ranges::any_of(folders, [](const std::string& folder) {
        return access((folder + "/knotifications5" + std::string(kFileName)).c_str(), F_OK) == 0 ||
               access((folder + "/knotifications6" + std::string(kFileName)).c_str(), F_OK) == 0;
    });
}

/// Returns none if the file is there and cannot be read as a whole.
std::optional<std::string> read(const std::string& path) {
    auto text = readText(path);
    if (!text && access(path.c_str(), F_OK) != 0) {
        return "";
    }
    return text && text->size() < kMostText ? std::move(text) : std::nullopt;
}

/// Replaces the file in one step; removes it if there is nothing left in it.
bool write(const std::string& path, const std::string& text) {
    if (text.empty()) {
        return unlink(path.c_str()) == 0;
    }
    std::error_code error;
    AtomicFile file(std::filesystem::path(path).parent_path(), error);
    return !error &&
           ::write(file.descriptor(), text.data(), text.size()) ==
               static_cast<ssize_t>(text.size()) &&
           !file.takePlace(path);
}

}  // namespace

std::string withoutTrashSound(const std::string& text) {
    Settings settings(text);
    const auto action = settings.value(kAction);
    if (settings.isLocked || !hasSound(action.value_or(std::string(kSound)))) {
        return text;
    }
    settings.set(kBefore, action.value_or(""));
    settings.set(kAction, soundless(action.value_or("")));
    return settings.text();
}

std::string withUsersTrashSound(const std::string& text) {
    Settings settings(text);
    const auto before = settings.value(kBefore);
    if (!before) {
        return text;
    }
    settings.remove(kBefore);
    if (settings.value(kAction) == soundless(*before)) {
        settings.remove(kAction);
        if (!before->empty()) {
            settings.set(kAction, *before);
        }
    }
    return settings.text();
}

PlasmaTrashSound::PlasmaTrashSound(EpollMainQueue& queue)
    : link_(queue, sd_bus_open_user,
            {.onOpen = [this](sd_bus* bus) { bus_ = bus; }, .onLost = [this] { bus_ = nullptr; }}) {
}

void PlasmaTrashSound::setFinderTrashSoundEnabled(bool enabled) {
    const std::string home = xdgConfigHome();
    if (home.empty() || !isPlasmaInstalled()) {
        return;
    }
    // A link stays one, as users have it who keep their settings elsewhere.
    std::error_code error;
    const std::filesystem::path path =
        std::filesystem::weakly_canonical(home + std::string(kFileName), error);
    const auto before = error ? std::nullopt : read(path);
    if (!before) {
        return;
    }
    const std::string after = enabled ? withUsersTrashSound(*before) : withoutTrashSound(*before);
    if (after != *before && write(path, after)) {
        announce();
    }
}

/// Programs of KDE read the settings again after this signal.
void PlasmaTrashSound::announce() {
    link_.keepOpen();
    if (bus_ != nullptr) {
        sd_bus_emit_signal(bus_, "/Config", "org.kde.knotification", "reparseConfiguration", "s",
                           "plasma_workspace");
        sd_bus_flush(bus_);
    }
}

}  // namespace chimewerk
