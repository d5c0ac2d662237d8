#include "linux/storage/settings_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <sstream>

#include "support/small_disk.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using Finding = SettingsFile::Finding;

class TheSettingsFile : public testing::Test {
protected:
    static void write(const fs::path& path, const std::string& text) {
        std::ofstream(path) << text;
    }
    static std::string textAt(const fs::path& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    /// What lies in the folder, by name, in order.
    static std::string namesIn(const fs::path& folder) {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.insert(entry.path().filename());
        }
        std::string all;
        for (const auto& name : names) {
            all += name + " ";
        }
        return all;
    }

    TemporaryFolder home;
    fs::path folder = home.path() / "config";
    fs::path path = folder / "s.json";
    SettingsFile file{path.string()};
};

TEST_F(TheSettingsFile, IsAbsentUntilItIsWrittenFoldersIncluded) {
    EXPECT_EQ(file.read().finding, Finding::absent);
    EXPECT_TRUE(file.replace("one"));
    EXPECT_EQ(file.read().text, "one");
    EXPECT_TRUE(file.replace(""));
    EXPECT_EQ(file.read().finding, Finding::text);
    EXPECT_EQ(file.read().text, "");
    EXPECT_EQ(namesIn(folder), "s.json ");
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(TheSettingsFile, KeepsItsPermissions) {
    ASSERT_TRUE(file.replace("one"));
    fs::permissions(path, fs::perms{0640});
    ASSERT_TRUE(file.replace("two"));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0640});
}

TEST_F(TheSettingsFile, StaysALinkAndTheFileItNamesIsWritten) {
    const fs::path elsewhere = home.path() / "elsewhere" / "real.json";
    fs::create_directories(folder);
    fs::create_symlink("b", path);
    fs::create_symlink("../elsewhere/real.json", folder / "b");
    EXPECT_EQ(file.read().finding, Finding::absent);
    EXPECT_TRUE(file.replace("one"));
    EXPECT_EQ(textAt(elsewhere), "one");

    file.setAside();
    EXPECT_TRUE(file.replace("two"));
    EXPECT_EQ(textAt(elsewhere), "two");
    EXPECT_EQ(namesIn(elsewhere.parent_path()), "real.json real.json.damaged-1 ");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(fs::is_symlink(folder / "b"));
}

TEST_F(TheSettingsFile, SetsEachAsideUnderANameOfItsOwn) {
    for (const char* const text : {"one", "two", "three"}) {
        ASSERT_TRUE(file.replace(text));
        file.setAside();
    }
    EXPECT_EQ(namesIn(folder), "s.json.damaged-1 s.json.damaged-2 s.json.damaged-3 ");
    EXPECT_EQ(textAt(path.string() + ".damaged-2"), "two");
    file.setAside();
    EXPECT_TRUE(file.replace("four"));
}

TEST_F(TheSettingsFile, LeavesACopyOnceIfItIsAskedTo) {
    file.copyAsideFirst();
    EXPECT_TRUE(file.replace("one"));
    file.copyAsideFirst();
    {
        const SmallDisk disk(2);
        EXPECT_FALSE(file.replace("2"));
        EXPECT_EQ(namesIn(folder), "s.json ");
    }
    for (const char* const text : {"two", "three"}) {
        EXPECT_TRUE(file.replace(text));
        EXPECT_EQ(namesIn(folder), "s.json s.json.damaged-1 ");
    }
    file.copyAsideFirst();
    EXPECT_TRUE(file.replace("four"));
    EXPECT_EQ(textAt(path.string() + ".damaged-1"), "one");
    EXPECT_EQ(textAt(path.string() + ".damaged-2"), "three");
}

TEST_F(TheSettingsFile, TakesNoPipeFolderOrDeviceForItselfNorWaitsForThem) {
    struct Case {
        const char* what;
        std::function<void()> make;
    };
    for (const Case& c :
         {Case{"folder", [&] { fs::create_directories(path / "inside"); }},
          Case{"pipe", [&] { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
          Case{"device", [&] { fs::create_symlink("/dev/null", path); }},
          Case{"link to a folder", [&] { fs::create_directory_symlink(home.path(), path); }},
          Case{"circle", [&] { fs::create_symlink("s.json", path); }}}) {
        fs::remove_all(folder);
        fs::create_directories(folder);
        c.make();
        EXPECT_EQ(file.read().finding, Finding::unreadable) << c.what;
        file.setAside();
        EXPECT_TRUE(file.replace("new")) << c.what;
        EXPECT_EQ(textAt(path), "new") << c.what;
        EXPECT_EQ(namesIn(folder), "s.json s.json.damaged-1 ") << c.what;
    }
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(TheSettingsFile, SetsAFolderAsideThatComesInItsPlaceLater) {
    fs::create_directories(path / "inside");
    EXPECT_TRUE(file.replace("new"));
    EXPECT_EQ(textAt(path), "new");
    EXPECT_TRUE(fs::exists(path.string() + ".damaged-1/inside"));
}

TEST_F(TheSettingsFile, IsAsItWasWhenTheDiskIsFull) {
    ASSERT_TRUE(file.replace("old"));
    {
        const SmallDisk disk(1000);
        EXPECT_FALSE(file.replace(std::string(1001, 'x')));
        EXPECT_EQ(textAt(path), "old");
        EXPECT_EQ(namesIn(folder), "s.json ");
        EXPECT_TRUE(file.replace(std::string(1000, 'y')));
    }
    EXPECT_TRUE(file.replace(std::string(1001, 'x')));
}

TEST_F(TheSettingsFile, IsNeverOverwrittenWhenItCouldNotBeSetAside) {
    // The name is so long that none beside it can be longer by the mark of what is set aside.
    const fs::path longest = home.path() / std::string(246, 'n');
    SettingsFile stuck(longest.string());
    ASSERT_TRUE(stuck.replace("damaged"));
    stuck.setAside();
    EXPECT_FALSE(stuck.replace("new"));
    EXPECT_EQ(textAt(longest), "damaged");
    fs::remove(longest);
    EXPECT_TRUE(stuck.replace("new"));
}

TEST_F(TheSettingsFile, IsNotWrittenWhereThereCanBeNoFolder) {
    write(folder, "a file");
    EXPECT_EQ(file.read().finding, Finding::absent);
    EXPECT_FALSE(file.replace("new"));
    fs::remove(folder);
    EXPECT_TRUE(file.replace("new"));

    SettingsFile nowhere("");
    EXPECT_EQ(nowhere.read().finding, Finding::absent);
    EXPECT_TRUE(nowhere.replace("new"));
}

TEST_F(TheSettingsFile, SweepsUpWhatCrashesHaveLeftButNothingElse) {
    fs::create_directories(folder);
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const char* const name :
         {".s.json.~abcdef", "s.json.backup", ".s.json.~folder", ".t.json.~abcdef"}) {
        if (std::string(name).ends_with("folder")) {
            fs::create_directory(folder / name);
        } else {
            write(folder / name, "x");
        }
        fs::last_write_time(folder / name, longAgo);
    }
    write(folder / ".s.json.~recent", "x");
    EXPECT_TRUE(file.replace("new"));
    EXPECT_EQ(namesIn(folder),
              ".s.json.~folder .s.json.~recent .t.json.~abcdef s.json s.json.backup ");
}

}  // namespace
}  // namespace chimewerk
