// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "sound/sound_event.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

using Dictionary = DefaultsDictionary;
using testing::ElementsAre;
using testing::Key;

TEST(Settings, StartWithFactoryValuesAndStoreNothingBeforeTheFirstChange) {
    SoundLibrary library;
    library->play("slap");
    library.restart();
    EXPECT_EQ(library->events, factoryEvents());
    EXPECT_EQ(library->currentTheme, SoundTheme::classic);
    EXPECT_EQ(library.defaults.changes, 0);
}

TEST(Settings, AreStoredInTheExpectedFormat) {
    SoundLibrary library;
    const auto& values = library.defaults.values;
    library->setVolume(0.3F, "slap");
    EXPECT_THAT(values, ElementsAre(Key("ChimewerkCustomThemes"), Key("ChimewerkEvents"),
                                    Key("ChimewerkTheme")));
    EXPECT_EQ(values.at("ChimewerkCustomThemes"), DefaultsValue{DefaultsData{"[]"}});
    EXPECT_EQ(values.at("ChimewerkTheme"), DefaultsValue{std::string("classic")});
    const auto& events = std::get<Dictionary>(values.at("ChimewerkEvents").value);
    EXPECT_EQ(events.size(), 19U);
    EXPECT_EQ(events.at("slap"), (DefaultsValue{Dictionary{{"path", {std::string()}},
                                                           {"volume", {static_cast<double>(0.3F)}},
                                                           {"enabled", {true}},
                                                           {"threshold", {0.0}}}}));

    library->createCustomTheme("n");
    library->setPath("/x", "slap");
    EXPECT_EQ(values.at("ChimewerkActiveCustomTheme"), DefaultsValue{std::string("A")});
    EXPECT_EQ(values.at("ChimewerkTheme"), DefaultsValue{std::string("system")});
    EXPECT_EQ(values.at("ChimewerkCustomThemes"),
              DefaultsValue{DefaultsData{R"([{"id":"A","name":"n","sounds":{"slap":"/x"}}])"}});

    library->setTheme(SoundTheme::bit8);
    EXPECT_FALSE(values.contains("ChimewerkActiveCustomTheme"));
    EXPECT_EQ(values.at("ChimewerkTheme"), DefaultsValue{std::string("8bit")});
}

TEST(Settings, UseTheValidPartsOfAnEntryAndFactoryValuesForTheRest) {
    struct Case {
        const char* what;
        Dictionary entry;
        std::function<void(SoundEvent&)> change = [](SoundEvent&) {};
    };
    for (const Case& c : {
             Case{"nothing", {}},
             Case{"volume alone", {{"volume", {0.3}}}, [](auto& e) { e.volume = 0.3F; }},
             Case{"volume beyond a float",
                  {{"volume", {1e300}}},
                  [](auto& e) { e.volume = HUGE_VALF; }},
             Case{"volume as text", {{"volume", {std::string("0.25")}}}},
             Case{"volume as a boolean", {{"volume", {false}}}},
             Case{"threshold", {{"threshold", {-3.5}}}, [](auto& e) { e.threshold = -3.5F; }},
             Case{"threshold as a dictionary", {{"threshold", {Dictionary{}}}}},
             Case{"switched off", {{"enabled", {false}}}, [](auto& e) { e.isEnabled = false; }},
             Case{
                 "switched off by -0", {{"enabled", {-0.0}}}, [](auto& e) { e.isEnabled = false; }},
             Case{"switch almost 1", {{"enabled", {1.00000001}}}},
             Case{"switch as text", {{"enabled", {std::string("false")}}}},
             Case{"path", {{"path", {std::string("/x")}}}, [](auto& e) { e.soundPath = "/x"; }},
             Case{"path as bytes", {{"path", {DefaultsData{"/x"}}}}},
         }) {
        SoundLibrary library;
        library.defaults.values["ChimewerkEvents"] = {
            Dictionary{{"slap", {c.entry}}, {"no_such", {Dictionary{}}}}};
        library.restart();
        auto expected = factoryEvents();
        c.change(*std::ranges::find(expected, "slap", &SoundEvent::id));
        EXPECT_EQ(library->events, expected) << c.what;
        EXPECT_EQ(library.defaults.changes, 0) << c.what;
    }
}

TEST(Settings, OfAWrongTypeAreRefusedAndIrreplaceableOnesKept) {
    const Dictionary good{{"slap", {Dictionary{{"volume", {0.25}}}}}};
    const DefaultsData themes{R"([{"id":"A","name":"","sounds":{}}])"};
    struct Case {
        std::string key;
        DefaultsValue value;
        int damages;
    };
    for (const Case& c : {Case{"ChimewerkEvents", {std::string("{}")}, 1},
                          Case{"ChimewerkEvents", {DefaultsData{"{}"}}, 1},
                          Case{"ChimewerkEvents",
                               {Dictionary{{"slap", good.at("slap")}, {"zzz_unknown", {1.0}}}},
                               1},
                          Case{"ChimewerkCustomThemes", {themes.bytes}, 1},
                          Case{"ChimewerkCustomThemes", {DefaultsData{themes.bytes + "x"}}, 1},
                          Case{"ChimewerkActiveCustomTheme", {DefaultsData{"A"}}, 0},
                          Case{"ChimewerkActiveCustomTheme", {std::string("a")}, 0},
                          Case{"ChimewerkTheme", {DefaultsData{"soft"}}, 0},
                          Case{"ChimewerkTheme", {std::string("Soft")}, 0}}) {
        SoundLibrary library;
        library.defaults.values = {{"ChimewerkCustomThemes", {themes}}};
        library.defaults.values[c.key] = c.value;
        library.restart();
        SCOPED_TRACE(c.key + " " + testing::PrintToString(c.value.value.index()));
        EXPECT_EQ(library->events, factoryEvents());
        EXPECT_EQ(library->customThemes.empty(), c.key == "ChimewerkCustomThemes");
        EXPECT_FALSE(library->isCustomThemeActive());
        EXPECT_EQ(library->currentTheme, SoundTheme::classic);
        EXPECT_EQ(library.defaults.damages, c.damages);
        EXPECT_EQ(library.defaults.changes, 0);
    }
}

}  // namespace
}  // namespace chimewerk
