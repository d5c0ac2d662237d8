#include "linux/storage/json_defaults_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <sstream>

#include "linux/base/epoll_main_queue.h"
#include "linux/storage/json_values.h"
#include "support/settings_model.h"
#include "support/small_disk.h"
#include "support/sound_library.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using Dictionary = DefaultsDictionary;
using testing::HasSubstr;

class TheJsonStore : public testing::Test {
protected:
    DefaultsStore& store() { return *opened; }
    /// As if the program were ended and started.
    void restart() {
        opened.reset();
        opened.emplace(queue, home.path().string());
    }
    void write(const std::string& text) const {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    static std::string textAt(const fs::path& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    /// Lets the program run until the file holds this, at most a few seconds.
    bool comesToHold(const std::string& part) {
        for (int i = 0; i < 300; ++i) {
            queue.postAfter(Seconds{0.01}, [this] { queue.quit(); });
            queue.run();
            if (textAt(file).find(part) != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    TemporaryFolder home;
    fs::path file = home.path() / "chimewerk" / "settings.json";
    EpollMainQueue queue;
    std::optional<JsonDefaultsStore> opened{std::in_place, queue, home.path().string()};
};

TEST_F(TheJsonStore, GivesBackWhatItHoldsKindByKind) {
    const std::vector<DefaultsValue> values = {
        {true},
        {false},
        {1.0},
        {0.5},
        {std::string()},
        {std::string("ü\n\"\\\0x", 8)},
        {std::string("/home/j\xFCrgen")},
        {DefaultsData{}},
        {DefaultsData{"[{\"id\":1}]"}},
        {DefaultsData{std::string("\xFF\0\x80", 3)}},
        {Dictionary{}},
        {Dictionary{{"$data", {std::string("no data")}}}},
        {Dictionary{
            {"$$", {true}}, {"", {1.0}}, {"$\xFF", {Dictionary{{"a", {DefaultsData{"b"}}}}}}}},
    };
    for (std::size_t i = 0; i < values.size(); ++i) {
        store().setObject("key " + std::to_string(i), values[i]);
    }
    store().setObject("\xFE key", DefaultsValue{true});
    store().setData("made later", [] { return DefaultsData{"later"}; });
    store().setObject("removed", DefaultsValue{true});
    store().setObject("removed", std::nullopt);
    for (int run = 0; run < 2; ++run) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(store().object("key " + std::to_string(i)), values[i])
                << i << " in run " << run;
        }
        EXPECT_EQ(store().object("\xFE key"), DefaultsValue{true});
        EXPECT_EQ(store().object("made later"), DefaultsValue{DefaultsData{"later"}});
        EXPECT_EQ(store().object("removed"), std::nullopt);
        restart();
    }
}

TEST(ANumberInJson, IsTheSameFloatBitForBit) {
    std::vector<float> numbers = {0.0F,
                                  -0.0F,
                                  0.3F,
                                  0.1F,
                                  1e-45F,
                                  -1.1754942e-38F,
                                  std::numeric_limits<float>::max(),
                                  7.038531e-26F,
                                  16777217.0F,
                                  std::numeric_limits<float>::infinity(),
                                  -std::numeric_limits<float>::infinity()};
    std::mt19937 random(3);
    while (numbers.size() < 50000) {
        const auto number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isfinite(number)) {
            numbers.push_back(number);
        }
    }
    for (const float number : numbers) {
        const auto json =
            nlohmann::json::parse(jsonFromValue({static_cast<double>(number)}).dump());
        const auto back = static_cast<float>(std::get<double>(valueFromJson(json).value));
        ASSERT_EQ(std::bit_cast<std::uint32_t>(back), std::bit_cast<std::uint32_t>(number))
            << number;
    }
    const auto notANumber = jsonFromValue({std::numeric_limits<double>::quiet_NaN()}).dump();
    EXPECT_EQ(valueFromJson(nlohmann::json::parse(notANumber)), DefaultsValue{});
}

TEST_F(TheJsonStore, WritesForHumansToo) {
    store().setObject("ChimewerkEvents",
                      DefaultsValue{Dictionary{{"slap",
                                                {Dictionary{{"volume", {static_cast<double>(0.3F)}},
                                                            {"enabled", {true}},
                                                            {"path", {std::string("/ü.wav")}}}}}}});
    opened->flush();
    EXPECT_EQ(textAt(file), R"({
  "ChimewerkEvents": {
    "slap": {
      "enabled": true,
      "path": "/ü.wav",
      "volume": 0.3
    }
  }
}
)");
}

TEST_F(TheJsonStore, KeepsWhatItDoesNotKnow) {
    const std::string unknown =
        R"("Other":{"list":[1,null,{"x":0.1234567890123456}],"big":18446744073709551615})";
    write("{" + unknown + R"(,"ChimewerkTheme":"soft"})");
    restart();
    EXPECT_EQ(store().object("ChimewerkTheme"), DefaultsValue{std::string("soft")});
    store().setObject("ChimewerkDarkMode", DefaultsValue{true});
    opened->flush();
    EXPECT_EQ(nlohmann::json::parse(textAt(file)),
              nlohmann::json::parse("{" + unknown +
                                    R"(,"ChimewerkTheme":"soft","ChimewerkDarkMode":true})"));
}

TEST_F(TheJsonStore, TakesForeignJsonForWhatItIsNearest) {
    write(
        "\xEF\xBB\xBF"
        R"({"list":[1],"null":null,"whole":1,"huge":1e300,"in":{"list":[],"half":0.5},"$data":"x"})");
    restart();
    EXPECT_EQ(store().object("list"), DefaultsValue{});
    EXPECT_EQ(store().object("null"), DefaultsValue{});
    EXPECT_EQ(store().object("whole"), DefaultsValue{1.0});
    EXPECT_EQ(store().object("huge"), DefaultsValue{1e300});
    EXPECT_EQ(store().object("in"), (DefaultsValue{Dictionary{{"list", {}}, {"half", {0.5}}}}));
    EXPECT_EQ(store().object("$data"), DefaultsValue{std::string("x")});
    EXPECT_EQ(store().object("absent"), std::nullopt);
}

TEST_F(TheJsonStore, SetsAsideWhatItCannotUnderstandAndStartsAfresh) {
    const std::string deep(100000, '[');
    int number = 0;
    for (const std::string& damaged :
         {std::string(), std::string("{"), std::string("[]"), std::string("null"),
          std::string(R"({"a":1} x)"), std::string("{\"a\":\"\xFF\"}"),
          std::string(R"({"a":"\ud800"})"), std::string(4096, '\0'),
          R"({"a":)" + deep + std::string(deep.size(), ']') + "}", "{\"a\":" + deep,
          std::string(R"({"a":1e400})")}) {
        opened.reset();
        write(damaged);
        opened.emplace(queue, home.path().string());
        EXPECT_EQ(store().object("a"), std::nullopt);
        EXPECT_FALSE(fs::exists(file)) << number;
        EXPECT_EQ(textAt(file.string() + ".damaged-" + std::to_string(++number)), damaged);
        store().setObject("b", DefaultsValue{true});
        restart();
        EXPECT_EQ(store().object("b"), DefaultsValue{true}) << number;
    }
}

TEST_F(TheJsonStore, KeepsACopyOfDamagedSettingsWhenTheyAreReplaced) {
    const std::string damaged = R"({"ChimewerkCustomThemes":{"$data":"[{\"id\":\"precious\"}]"}})";
    write(damaged);
    const fs::path copy = file.string() + ".damaged-1";
    for (const bool change : {false, true}) {
        restart();
        SoundLibrary library(&store());
        if (change) {
            library->setVolume(0, "slap");
        }
        opened->flush();
        EXPECT_EQ(fs::exists(copy), change);
    }
    EXPECT_EQ(textAt(copy), damaged);
    EXPECT_THAT(textAt(file), HasSubstr("[]"));
}

TEST_F(TheJsonStore, TouchesNothingUntilTheFirstChange) {
    restart();
    EXPECT_TRUE(fs::is_empty(home.path()));
    write("{ }");
    restart();
    store().setObject("absent", std::nullopt);
    restart();
    EXPECT_EQ(textAt(file), "{ }");
}

TEST_F(TheJsonStore, WritesSoonAfterAChangeByItself) {
    store().setObject("a", DefaultsValue{true});
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(comesToHold("true"));
    store().setObject("a", DefaultsValue{1.5});
    EXPECT_TRUE(comesToHold("1.5"));
}

TEST_F(TheJsonStore, GoesOnInMemoryWhileTheDiskIsFullAndWritesWhenItCan) {
    store().setObject("a", DefaultsValue{std::string("old")});
    opened->flush();
    {
        const SmallDisk disk(10);
        store().setObject("a", DefaultsValue{std::string("new")});
        opened->flush();
        EXPECT_EQ(store().object("a"), DefaultsValue{std::string("new")});
        EXPECT_THAT(textAt(file), HasSubstr("old"));
    }
    // By itself, without another change.
    EXPECT_TRUE(comesToHold("new"));

    {
        const SmallDisk disk(10);
        store().setObject("a", DefaultsValue{std::string("last")});
        opened->flush();
    }
    opened.reset();
    EXPECT_THAT(textAt(file), HasSubstr("last"));
}

TEST(AnySessionOfSettingsInRealFiles, LeavesTheLibraryAsTheRulesHaveIt) {
    EpollMainQueue queue;
    const MakeStorage makeStorage = [&queue] {
        return [&queue, home = std::make_shared<TemporaryFolder>()] {
            return std::make_unique<JsonDefaultsStore>(queue, home->path().string());
        };
    };
    EXPECT_EQ(firstFailingSession(1000, 12, 40, makeStorage), "");
}

}  // namespace
}  // namespace chimewerk
