// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/inotify_folder_source.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "linux/desktop/xdg_folders.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A temporary home folder for each test.
class TheUsersFolders : public testing::Test {
protected:
    TheUsersFolders() {
        setenv("HOME", home.path().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
    }
    ~TheUsersFolders() override { setenv("HOME", ownHome.c_str(), 1); }
    void placeFolders(const std::string& text) const {
        fs::create_directories(home.path() / ".config");
        std::ofstream(home.path() / ".config" / "user-dirs.dirs") << text;
    }

    const std::string ownHome = std::getenv("HOME");
    TemporaryFolder home;
};

TEST_F(TheUsersFolders, AreThoseOfTheUsersConfiguration) {
    EXPECT_THAT(screenshotFolders(),
                ElementsAre(home / "Desktop", home / "Pictures", home / "Pictures/Screenshots"));
    struct Case {
        const char* text;
        std::string desktop;
    };
    for (const Case& c :
         {Case{"XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n", home / "Schreibtisch"},
          Case{"# comment\nXDG_MUSIC_DIR=\"/m\"\n  XDG_DESKTOP_DIR=\"/srv/my \\\"own\\\" desk/\"\n",
               "/srv/my \"own\" desk"},
          Case{"XDG_DESKTOP_DIR=\"$HOME/\"\n", home.path().string()},
          Case{"XDG_DESKTOP_DIR=\"relative\"\n", home / "Desktop"},
          Case{"XDG_DESKTOP_DIR=/unquoted\n", home / "Desktop"},
          Case{"XDG_DESKTOP_DIR=", home / "Desktop"},
          Case{"#XDG_DESKTOP_DIR=\"/commented\"\n", home / "Desktop"},
          Case{"XDG_DESKTOP_DIR=\"/a\"\nXDG_DESKTOP_DIR=\"/b\"\n", "/b"}}) {
        placeFolders(c.text);
        EXPECT_EQ(xdgUserFolder("DESKTOP", "Desktop"), c.desktop) << c.text;
    }
}

class TheInotifyFolders : public TheUsersFolders {
protected:
    TheInotifyFolders() { fs::create_directory(home / "Desktop"); }
    void save(const std::string& name) const { std::ofstream(home / name) << "image"; }

    EpollMainQueue queue;
    InotifyFolderSource source{queue};
};

TEST_F(TheInotifyFolders, ListWhatIsDirectlyInside) {
    fs::create_directory(home / "Desktop/folder");
    save("Desktop/file");
    save("Desktop/folder/inside");
    fs::create_symlink("nowhere", home / "Desktop/dangling");
    EXPECT_THAT(source.list(home / "Desktop"), UnorderedElementsAre("folder", "file", "dangling"));
    EXPECT_THAT(source.list(home / "missing"), IsEmpty());
    EXPECT_THAT(source.list(home / "Desktop/file"), IsEmpty());
    EXPECT_EQ(source.watch("relative", [] {}), nullptr);
}

}  // namespace
}  // namespace chimewerk
