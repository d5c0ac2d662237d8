// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/desktop_entries.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

TEST(ADesktopEntry, SaysWhetherMenusShowItAndWhatItRuns) {
    struct Case {
        const char* lines;
        bool isVisible;
        bool isActivatable;
        const char* program;
    };
    for (const Case& c :
         {Case{"Type=Application\nExec=xterm\n", true, false, "xterm"},
          Case{"Exec=/usr/bin/google-chrome-stable %U\nNoDisplay=false\n", true, false,
               "google-chrome-stable"},
          Case{"Exec=nautilus --new-window %U\nDBusActivatable=true\n"
               "[Desktop Action new-window]\nExec=other\nNoDisplay=true\n",
               true, true, "nautilus"},
          Case{"Exec=env BAMF_DESKTOP_FILE_HINT=/a/b.desktop /snap/bin/firefox %u\n", true, false,
               "firefox"},
          Case{"Exec=/usr/bin/flatpak run --branch=stable org.gnome.Maps\n", true, false, ""},
          Case{"Exec=sh -c \"exec wpctl status\"\n", true, false, ""},
          Case{"NoDisplay = true\r\nExec=\"/usr/libexec/evolution-data-server/alarm-notify\"\n",
               false, false, "alarm-notify"},
          Case{"Hidden=true\nExec=a\n", false, false, "a"}, Case{"Type=Link\n", false, false, ""},
          Case{"OnlyShowIn=GNOME;Unity;\n", true, false, ""},
          Case{"OnlyShowIn=KDE;\n", false, false, ""}, Case{"NotShowIn=GNOME;\n", false, false, ""},
          Case{"=\n\n# NoDisplay=true\nExec\nExec=\n", true, false, ""}}) {
        const auto entry =
            DesktopEntry::parse(std::string("[Desktop Entry]\n") + c.lines, {"ubuntu", "GNOME"});
        EXPECT_EQ(entry.isVisible, c.isVisible) << c.lines;
        EXPECT_EQ(entry.isActivatable, c.isActivatable) << c.lines;
        EXPECT_EQ(entry.program, c.program) << c.lines;
    }
}

TEST(ADesktopEntry, IsAPartOfTheDesktopInItsOwnCategory) {
    const auto parse = [](const std::string& lines) {
        return DesktopEntry::parse("[Desktop Entry]\nType=Application\n" + lines, {"XFCE"});
    };
    for (const auto& [categories, isPart] :
         {std::pair("Utility;X-XFCE;X-Xfce-Toplevel;", true), std::pair("Utility;X-XFCE;", true),
          std::pair("XFCE;GTK;Settings;X-XFCE-SettingsDialog;X-XFCE;", false),
          std::pair("Utility;X-LXQT;", false), std::pair("System;FileManager;", false)}) {
        EXPECT_EQ(parse(std::string("Categories=") + categories).isPartOfDesktop, isPart)
            << categories;
    }
}

class TheDesktopEntries : public testing::Test {
protected:
    void add(const std::string& file, const std::string& lines) {
        std::filesystem::create_directories(folder / file.substr(0, file.find('/')));
        std::ofstream(folder / file) << "[Desktop Entry]\nType=Application\n" << lines << '\n';
    }

    TemporaryFolder folder;
    DesktopEntries entries{{folder / "own", folder / "missing", folder / "all"}, {}};
};

TEST_F(TheDesktopEntries, AreFoundByNameByItsBeginningAndByProgram) {
    add("all/debian-xterm.desktop", "Exec=xterm");
    add("all/debian-uxterm.desktop", "Exec=uxterm\nNoDisplay=true");
    add("all/org.libreoffice.LibreOffice.writer.desktop", "Exec=libreoffice --writer");
    add("all/chromium.desktop", "Exec=/usr/bin/chromium %U");
    add("all/notes.txt", "Exec=notes");
    add("all/hidden-here.desktop", "Exec=xcalc");
    add("own/hidden-here.desktop", "Exec=xcalc\nHidden=true");

    struct Case {
        const char* name;
        const char* program;
        bool isFound;
        bool isVisible;
    };
    for (const Case& c : {Case{"debian-xterm", "", true, true}, Case{"xterm", "xterm", true, true},
                          Case{"uxterm", "uxterm", true, false},
                          Case{"org.libreoffice.LibreOffice", "bwrap", true, true},
                          Case{"org.chromium.Chromium", "chromium", true, true},
                          Case{"wpctl", "wpctl", false, false}, Case{"", "", false, false},
                          Case{"notes", "notes", false, false}, Case{"org", "", true, true},
                          Case{"or", "", false, false}, Case{"../all/chromium", "", false, false},
                          Case{"hidden-here", "xcalc", true, false}}) {
        const auto entry = entries.find(c.name, {c.program});
        ASSERT_EQ(entry.has_value(), c.isFound) << c.name;
        EXPECT_EQ(entry && entry->isVisible, c.isVisible) << c.name;
    }
}

}  // namespace
}  // namespace chimewerk
