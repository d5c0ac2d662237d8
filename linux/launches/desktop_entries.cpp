// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/desktop_entries.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

#include "linux/base/file_reading.h"
#include "linux/base/text_parts.h"

namespace chimewerk {

namespace {

constexpr std::string_view kEnding = ".desktop";
/// Programs that run another one.
constexpr std::array<std::string_view, 8> kInterpreters{
    "sh", "bash", "python3", "perl", "flatpak", "snap", "pkexec", "gapplication"};

/// Returns the file name of the program that a command runs; empty for that of an interpreter.
/// "env" and its variables are skipped.
std::string programOf(std::string_view command) {
    for (const std::string_view part : words(command)) {
        std::string word(part);
        std::erase(word, '"');
        std::string name = word.substr(word.rfind('/') + 1);
        if (name == "env" || word.find('=') != std::string::npos) {
            continue;
        }
        const bool isInterpreter =
            std::ranges::find(kInterpreters, std::string_view(name)) != kInterpreters.end();
        return isInterpreter ? "" : name;
    }
    return "";
}

/// Returns whether one of `desktops` is in a list that is separated by semicolons.
bool namesOneOf(std::string_view list, const std::vector<std::string>& desktops) {
    return std::ranges::any_of(split(list, ';'), [&](std::string_view name) {
        return std::ranges::find(desktops, name) != desktops.end();
    });
}

/// Desktops mark what belongs to them with a category of their name, such as "X-XFCE".
bool isPartOf(const std::vector<std::string>& desktops, std::string_view categories) {
    std::vector<std::string> own = desktops;
    for (std::string& category : own) {
        category.insert(0, "X-");
    }
    return namesOneOf(categories, own) && !namesOneOf(categories, {"Settings"});
}

}  // namespace

DesktopEntry DesktopEntry::parse(const std::string& text,
                                 const std::vector<std::string>& desktops) {
    DesktopEntry entry;
    entry.isVisible = true;
    bool isInGroup = false;
    for (const std::string_view line : split(text, '\n')) {
        if (line.starts_with('[')) {
            isInGroup = line.starts_with("[Desktop Entry]");
        }
        const std::size_t equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = line.substr(0, line.find_last_not_of(" \t", equals - 1) + 1);
        const std::size_t start = line.find_first_not_of(" \t", equals + 1);
        const std::string_view value = line.substr(std::min(start, line.size()));
        const bool isTrue = value.starts_with("true");
        if (key == "NoDisplay" || key == "Hidden") {
            entry.isVisible &= !isTrue;
        } else if (key == "Type") {
            entry.isVisible &= value.starts_with("Application");
        } else if (key == "OnlyShowIn") {
            entry.isVisible &= namesOneOf(value, desktops);
        } else if (key == "NotShowIn") {
            entry.isVisible &= !namesOneOf(value, desktops);
        } else if (key == "DBusActivatable") {
            entry.isActivatable = isTrue;
        } else if (key == "Exec") {
            entry.program = programOf(value);
        } else if (key == "Categories") {
            entry.isPartOfDesktop = isPartOf(desktops, value);
        }
    }
    return entry;
}

DesktopEntries::DesktopEntries(std::vector<std::string> folders, std::vector<std::string> desktops)
    : folders_(std::move(folders)), desktops_(std::move(desktops)) {}

std::optional<DesktopEntry> DesktopEntries::find(const std::string& name) const {
    if (name.empty() || name.find('/') != std::string::npos) {
        return std::nullopt;
    }
    for (const std::string& folder : folders_) {
        if (const auto text = readText(folder + "/" + name + std::string(kEnding))) {
            return DesktopEntry::parse(*text, desktops_);
        }
    }
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::find(const std::string& name,
                                                 const std::vector<std::string>& programs) const {
    std::optional<DesktopEntry> best = find(name);
    if (best) {
        return best;
    }
    std::set<std::string> seen;
    for (const std::string& folder : folders_) {
        for (const std::string& fileName : namesIn(folder)) {
            if (!fileName.ends_with(kEnding) || !seen.insert(fileName).second) {
                continue;
            }
            const auto entry =
                DesktopEntry::parse(readText(folder + "/" + fileName).value_or(""), desktops_);
            const bool matches = (!name.empty() && fileName.starts_with(name + ".")) ||
                                 (!entry.program.empty() &&
                                  std::ranges::find(programs, entry.program) != programs.end());
            if (matches && (!best || entry.isVisible)) {
                best = entry;
            }
        }
    }
    return best;
}

}  // namespace chimewerk
