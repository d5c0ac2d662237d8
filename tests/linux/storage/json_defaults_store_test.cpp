// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

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

#include "linux/base/epoll_main_queue.h"
#include "linux/storage/json_values.h"
#include "support/run_queue.h"
#include "support/small_disk.h"
#include "support/sound_library.h"
#include "support/unprivileged.h"
#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using Dictionary = DefaultsDictionary;
using testing::HasSubstr;

class TheJsonStore : public testing::Test {
protected:
    DefaultsStore& store() { return *opened; }
    /// Restarts the program.
    void restart() { opened.emplace(queue, home.path().string()); }
    /// Restarts the program with this settings file.
    void restartOn(const std::string& text) {
        opened.reset();
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
        restart();
    }
    /// Runs the queue until the file contains this text. Returns false if it never does.
    bool eventuallyContains(const std::string& part) {
        return runUntil(queue, [&] { return readFile(file).find(part) != std::string::npos; });
    }

    TemporaryFolder home;
    fs::path file = home.path() / "chimewerk" / "settings.json";
    EpollMainQueue queue;
    std::optional<JsonDefaultsStore> opened{std::in_place, queue, home.path().string()};
};

TEST_F(TheJsonStore, ReturnsEachTypeOfValueUnchanged) {
    const Dictionary values = {
        {"boolean", {true}},
        {"\xFE key", {false}},
        {"number", {0.5}},
        {"empty text", {std::string()}},
        {"text", {std::string("ü\n\"\\\0x", 7)}},
        {"text of bytes", {std::string("/home/j\xFCrgen")}},
        {"empty bytes", {DefaultsData{}}},
        {"bytes", {DefaultsData{std::string("[{\"id\":1}]\xFF\0\x80", 13)}}},
        {"empty dictionary", {Dictionary{}}},
        {"dictionary like bytes", {Dictionary{{"$data", {std::string("no data")}}}}},
        {"dictionary",
         {Dictionary{
             {"$$", {true}}, {"", {1.0}}, {"$\xFF", {Dictionary{{"a", {DefaultsData{"b"}}}}}}}}},
    };
    for (const auto& [key, value] : values) {
        store().setObject(key, value);
    }
    store().setData("made later", [] { return DefaultsData{"later"}; });
    store().setObject("removed", DefaultsValue{true});
    store().setObject("removed", std::nullopt);
    for (int run = 0; run < 2; ++run) {
        for (const auto& [key, value] : values) {
            EXPECT_EQ(store().object(key), value) << key << " in run " << run;
        }
        EXPECT_EQ(store().object("made later"), DefaultsValue{DefaultsData{"later"}});
        EXPECT_EQ(store().object("removed"), std::nullopt);
        restart();
    }
}

TEST(ANumberInJson, IsTheSameFloatBitForBit) {
    const auto comeBack = [](double number) {
        return valueFromJson(nlohmann::json::parse(jsonFromValue({number}).dump()));
    };
    std::vector<float> numbers = {0.0F,          -0.0F,           0.3F,
                                  1e-45F,        -1.1754942e-38F, std::numeric_limits<float>::max(),
                                  7.038531e-26F, 16777217.0F,     HUGE_VALF,
                                  -HUGE_VALF};
    std::mt19937 random(3);
    while (numbers.size() < 50000) {
        const auto number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isfinite(number)) {
            numbers.push_back(number);
        }
    }
    for (const float number : numbers) {
        const auto back =
            static_cast<float>(std::get<double>(comeBack(static_cast<double>(number)).value));
        ASSERT_EQ(std::bit_cast<std::uint32_t>(back), std::bit_cast<std::uint32_t>(number))
            << number;
    }
    EXPECT_EQ(comeBack(std::nan("")), DefaultsValue{});
}

TEST_F(TheJsonStore, WritesReadableJsonAndKeepsUnknownEntries) {
    const std::string unknown = R"({
  "Other": {
    "big": 18446744073709551615,
    "list": [
      1,
      null,
      {
        "x": 0.1234567890123456
      }
    ]
  },
  "slap": {
    "enabled": true,
    "path": "/ü.wav",
    "volume": 0.3
  }
}
)";
    restartOn(R"({"Other":{"list":[1,null,{"x":0.1234567890123456}],"big":18446744073709551615}})");
    store().setObject("slap", DefaultsValue{Dictionary{{"volume", {static_cast<double>(0.3F)}},
                                                       {"enabled", {true}},
                                                       {"path", {std::string("/ü.wav")}}}});
    restart();
    EXPECT_EQ(readFile(file), unknown);
}

TEST_F(TheJsonStore, ReadsForeignJsonAsTheNearestType) {
    restartOn(
        "\xEF\xBB\xBF"
        R"({"list":[1],"null":null,"whole":1,"huge":1e300,"in":{"list":[],"half":0.5},"$data":"x"})");
    for (const auto& [key, value] : Dictionary{{"list", {}},
                                               {"null", {}},
                                               {"whole", {1.0}},
                                               {"huge", {1e300}},
                                               {"in", {Dictionary{{"list", {}}, {"half", {0.5}}}}},
                                               {"$data", {std::string("x")}}}) {
        EXPECT_EQ(store().object(key), value) << key;
    }
    EXPECT_EQ(store().object("absent"), std::nullopt);
}

TEST_F(TheJsonStore, SetsAsideAnInvalidFileAndStartsEmpty) {
    const std::string deep(100000, '[');
    int number = 0;
    for (const std::string& damaged :
         {std::string(), std::string("{"), std::string("[]"), std::string("null"),
          std::string(R"({"a":1} x)"), std::string("{\"a\":1}\0 x", 10),
          std::string("{\"a\":\"\xFF\"}"), std::string(R"({"a":"\ud800"})"),
          std::string(4096, '\0'), R"({"a":)" + deep + std::string(deep.size(), ']') + "}",
          "{\"a\":" + deep, std::string(R"({"a":1e400})")}) {
        restartOn(damaged);
        EXPECT_EQ(store().object("a"), std::nullopt) << number;
        EXPECT_FALSE(fs::exists(file)) << number;
        EXPECT_EQ(readFile(file.string() + ".damaged-" + std::to_string(++number)), damaged);
        store().setObject("b", DefaultsValue{true});
        restart();
        EXPECT_EQ(store().object("b"), DefaultsValue{true}) << number;
    }
}

TEST_F(TheJsonStore, KeepsACopyOfDamagedSettingsWhenTheyAreReplaced) {
    const std::string damaged = R"({"ChimewerkCustomThemes":{"$data":"[{\"id\":\"precious\"}]"}})";
    restartOn(damaged);
    SoundLibrary library(&store());
    opened->flush();
    EXPECT_EQ(readFile(file), damaged);
    const fs::path copy = file.string() + ".damaged-1";
    EXPECT_FALSE(fs::exists(copy)) << "before the first change";
    library->setVolume(0, "slap");
    opened->flush();
    EXPECT_EQ(readFile(copy), damaged);
    EXPECT_THAT(readFile(file), HasSubstr("[]"));
}

TEST_F(TheJsonStore, WritesNothingUntilTheFirstChangeAndThenSoonByItself) {
    restart();
    EXPECT_TRUE(fs::is_empty(home.path()));
    restartOn("{ }");
    store().setObject("absent", std::nullopt);
    restart();
    EXPECT_EQ(readFile(file), "{ }");
    store().setObject("a", DefaultsValue{true});
    EXPECT_EQ(readFile(file), "{ }");
    EXPECT_TRUE(eventuallyContains("true"));
    store().setObject("a", DefaultsValue{1.5});
    EXPECT_TRUE(eventuallyContains("1.5"));
}

TEST_F(TheJsonStore, GoesOnInMemoryWhileItCannotWriteAndWritesWhenItCan) {
    restartOn(R"({"a":"old"})");
    const auto changeTo = [&](const char* value) {
        store().setObject("a", DefaultsValue{std::string(value)});
        opened->flush();
        EXPECT_EQ(store().object("a"), DefaultsValue{std::string(value)});
        EXPECT_THAT(readFile(file), HasSubstr("old"));
    };
    {
        const SmallDisk full(10);
        changeTo("lost when the disk is full");
    }
    {
        const Unprivileged self;
        self.permit(home.path(), 0755);
        self.permit(file.parent_path(), 0555);
        self.permit(file, 0644);
        changeTo("lost in a folder that is read-only");
        self.permit(file.parent_path(), 0777);
        // By itself, without another change.
        EXPECT_TRUE(eventuallyContains("read-only"));
    }
}

}  // namespace
}  // namespace chimewerk
