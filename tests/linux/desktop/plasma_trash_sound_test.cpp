// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/plasma_trash_sound.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"

namespace chimewerk {
namespace {

constexpr const char* kOther = "[Event/desktop]\nAction=Popup\n";

TEST(ThePlasmaTrashSound, IsTakenAndGivenBackAsTheUserHadIt) {
    struct Case {
        const char* what;
        std::string users;
        std::string silenced;
    };
    const std::string before = std::string(kOther) + "\n";
    const std::string after = std::string("\n") + kOther;
    const std::string group = "[Event/Trash: emptied]\n";
    for (const Case& c : {
             Case{"no file", "", group + "Action=None\nChimewerkActionBefore=\n"},
             Case{"no choice", kOther, before + group + "Action=None\nChimewerkActionBefore=\n"},
             Case{"a choice", before + group + "Action=Sound|Popup\nSound=mine.ogg\n" + after,
                  before + group +
                      "Action=Popup\nChimewerkActionBefore=Sound|Popup\nSound=mine.ogg\n" + after},
             Case{"a sound of one's own", group + "Sound=mine.ogg\n",
                  group + "Action=None\nChimewerkActionBefore=\nSound=mine.ogg\n"},
             Case{"silenced by the user", before + group + "Action=\n", ""},
             Case{"a note instead", group + "Action=Popup\n" + after, ""},
             Case{"locked action", group + "Action[$i]=Sound\n", ""},
             Case{"locked file", "[$i]\n" + after, ""},
             Case{"locked group", "[Event/Trash: emptied][$i]\nAction=Sound\n", ""},
         }) {
        const std::string silenced = c.silenced.empty() ? c.users : c.silenced;
        EXPECT_EQ(withoutTrashSound(c.users), silenced) << c.what;
        EXPECT_EQ(withoutTrashSound(silenced), silenced) << c.what << ", after a crash";
        EXPECT_EQ(withUsersTrashSound(silenced), c.users) << c.what;
        EXPECT_EQ(withUsersTrashSound(c.users), c.users) << c.what << ", not taken";
    }
    // The user has chosen again meanwhile.
    EXPECT_EQ(withUsersTrashSound(group + "Action=Popup\nChimewerkActionBefore=Sound\n"),
              group + "Action=Popup\n");
    EXPECT_EQ(withoutTrashSound(group + "Action=Popup|Sound\nChimewerkActionBefore=\n"),
              group + "Action=Popup\nChimewerkActionBefore=Popup|Sound\n");
}

TEST(ThePlasmaTrashSound, IsTakenInTheUsersFileWherePlasmaIsInstalled) {
    const TemporaryFolder home;
    setenv("XDG_CONFIG_HOME", std::string(home / "config").c_str(), 1);
    setenv("XDG_DATA_DIRS", std::string(home / "data").c_str(), 1);
    std::filesystem::create_directories(home / "config");
    std::filesystem::create_directories(home / "kept");
    const std::string file = home / "config/plasma_workspace.notifyrc";
    EpollMainQueue queue;
    PlasmaTrashSound sound(queue);
    sound.setFinderTrashSoundEnabled(false);
    EXPECT_FALSE(std::filesystem::exists(file)) << "no Plasma";
    std::filesystem::create_directories(home / "data/knotifications5");
    writeFile(home / "data/knotifications5/plasma_workspace.notifyrc", "");
    sound.setFinderTrashSoundEnabled(false);
    EXPECT_NE(readFile(file).find("Action=None\n"), std::string::npos);
    sound.setFinderTrashSoundEnabled(true);
    EXPECT_FALSE(std::filesystem::exists(file));
    // A link into a folder where the settings are kept.
    writeFile(home / "kept/rc", kOther);
    std::filesystem::create_symlink(home / "kept/rc", file);
    sound.setFinderTrashSoundEnabled(false);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_NE(readFile(home / "kept/rc").find("Action=None\n"), std::string::npos);
    sound.setFinderTrashSoundEnabled(true);
    EXPECT_EQ(readFile(home / "kept/rc"), kOther);
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_DATA_DIRS");
}

}  // namespace
}  // namespace chimewerk
