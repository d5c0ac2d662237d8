// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/inotify_folder_source.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "linux/desktop/screenshot_places.h"
#include "linux/desktop/xdg_folders.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
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

    /// Writes a catalogue of messages, in the format of the C library.
    void translate(const std::string& program,
                   const std::map<std::string, std::string>& messages) const {
        const fs::path folder = home.path() / "locale/de/LC_MESSAGES";
        fs::create_directories(folder);
        std::map<std::string, std::string> all = messages;
        all[""] = "Content-Type: text/plain; charset=UTF-8\n";
        const auto count = static_cast<std::uint32_t>(all.size());
        constexpr std::uint32_t kHeader = 28;
        std::vector<std::uint32_t> words{0x950412DE, 0, count, kHeader, kHeader + 8 * count, 0, 0};
        std::string texts;
        const auto add = [&](const std::string& text) {
            words.push_back(static_cast<std::uint32_t>(text.size()));
            words.push_back(static_cast<std::uint32_t>(kHeader + 16 * count + texts.size()));
            texts += text + '\0';
        };
        for (const auto& [text, translation] : all) {
            add(text);
        }
        for (const auto& [text, translation] : all) {
            add(translation);
        }
        std::ofstream file(folder / (program + ".mo"), std::ios::binary);
        file.write(reinterpret_cast<const char*>(words.data()),
                   static_cast<std::streamsize>(words.size() * sizeof words[0]));
        file << texts;
    }

    const std::string ownHome = std::getenv("HOME");
    TemporaryFolder home;
};

TEST_F(TheUsersFolders, AreThoseOfTheUsersConfiguration) {
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

/// Shows folders as "path: beginning, beginning" or "path: all".
std::vector<std::string> shown(const std::vector<ScreenshotFolder>& folders) {
    std::vector<std::string> texts;
    for (const ScreenshotFolder& folder : folders) {
        std::string text = folder.path + ":";
        for (const std::string& beginning : folder.beginnings) {
            text += folder.holdsOnlyShots ? " all" : " [" + beginning + "]";
        }
        texts.push_back(text);
    }
    return texts;
}

TEST_F(TheUsersFolders, HoldScreenshotsUnderTheNamesThatTheDesktopsGiveThem) {
    EXPECT_THAT(shown(screenshotFolders(home / "no translations")),
                testing::Contains(home / "Pictures/Screenshots: all"));
    // As the German translators of GNOME and Xfce have it.
    translate("gnome-shell", {{"Screenshot from %s", "Bildschirmfoto vom %s"},
                              {"Screenshots", "Bildschirmfotos"}});
    translate("xfce4-screenshooter", {{"Screenshot", "Bildschirmfoto"}});
    placeFolders("XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    std::ofstream(home.path() / ".config" / "spectaclerc")
        << "[Save]\ndefaultSaveLocation[$e]=file://$HOME/Meine%20Fotos/\n"
           "saveFilenameFormat=Schnappschuss_%Y%M%D_%H%m%S\n";
    // The locale that every Debian has, under a German name: in C.UTF-8 nothing is translated.
    fs::create_directory_symlink("/usr/lib/locale/C.utf8", home / "de_DE.utf8");
    setenv("LOCPATH", home.path().c_str(), 1);
    EXPECT_NE(setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    const auto folders = shown(screenshotFolders(home / "locale"));
    unsetenv("LOCPATH");
    setlocale(LC_ALL, "C");
    EXPECT_THAT(
        folders,
        testing::IsSupersetOf(
            {home / "Schreibtisch: [Screenshot]",
             home / ("Bilder: [Screenshot] [Schnappschuss_] [Bildschirmfoto vom ] [Screenshot From "
                     "] [Screenshot from ] [Bildschirmfoto]"),
             home / "Bilder/Screenshots: all", home / "Bilder/Bildschirmfotos: all",
             home / ("Meine Fotos: [Screenshot] [Schnappschuss_] [Bildschirmfoto vom ] [Screenshot "
                     "From ] [Screenshot from ] [Bildschirmfoto]")}));
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
    const auto file = source.identify(home / "Desktop", "file");
    EXPECT_TRUE(file);
    fs::rename(home / "Desktop/file", home / "moved");
    EXPECT_EQ(source.identify(home.path(), "moved"), file);
    EXPECT_EQ(source.identify(home / "Desktop", "file"), std::nullopt);
    save("Desktop/file");
    EXPECT_NE(source.identify(home / "Desktop", "file"), file);
    EXPECT_THAT(source.list(home / "Desktop/file"), IsEmpty());
    EXPECT_EQ(source.watch("relative", [](std::string_view) {}), nullptr);
}

}  // namespace
}  // namespace chimewerk
