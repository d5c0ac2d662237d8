// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace chimewerk {

/// What a desktop entry says of an application.
struct DesktopEntry {
    /// Shown in the menus of this desktop.
    bool isVisible = false;
    /// The bus starts it, under the name of the entry.
    bool isActivatable = false;
    /// The file name of the program that it runs; empty if only an interpreter is named.
    std::string program;
    /// In this desktop's own category and none for its settings: a launcher, a logout prompt.
    bool isPartOfDesktop = false;

    /// Parses the text of an entry. `desktops` are the names of this desktop.
    static DesktopEntry parse(const std::string& text, const std::vector<std::string>& desktops);
};

/// The desktop entries in some folders, read anew at each call. Any thread.
class DesktopEntries {
public:
    /// A file in an earlier folder hides one of the same name in later folders. `desktops` are the
    /// names of this desktop, as in $XDG_CURRENT_DESKTOP.
    DesktopEntries(std::vector<std::string> folders, std::vector<std::string> desktops);

    /// Returns the entry with this name, which has no ending.
    std::optional<DesktopEntry> find(const std::string& name) const;

    /// Returns the entry with this name, or one whose name begins with it and a dot, or one that
    /// runs one of the programs; of several, a visible one.
    std::optional<DesktopEntry> find(const std::string& name,
                                     const std::vector<std::string>& programs) const;

private:
    const std::vector<std::string> folders_;
    const std::vector<std::string> desktops_;
};

}  // namespace chimewerk
