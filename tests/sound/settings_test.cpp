#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "sound/sound_event.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

using Dictionary = DefaultsDictionary;
using testing::ElementsAre;
using testing::Key;

std::vector<SoundEvent> factoryWith(const std::function<void(SoundEvent&)>& change,
                                    std::string_view id = "slap") {
    auto events = factoryEvents();
    for (SoundEvent& event : events) {
        if (event.id == id) {
            change(event);
        }
    }
    return events;
}

TEST(Settings, StartAsTheFactoryMadeThemAndStoreNothingBeforeTheFirstChange) {
    SoundLibrary library;
    library->play("slap");
    library.restart();
    EXPECT_EQ(library->events, factoryEvents());
    EXPECT_EQ(library->currentTheme, SoundTheme::classic);
    EXPECT_EQ(library.defaults.changes, 0);
}

TEST(Settings, AreStoredInTheirAgreedShape) {
    SoundLibrary library;
    library->setVolume(0.3F, "slap");
    EXPECT_THAT(
        library.defaults.values,
        ElementsAre(Key("ChimewerkCustomThemes"), Key("ChimewerkEvents"), Key("ChimewerkTheme")));
    EXPECT_EQ(library.defaults.values.at("ChimewerkCustomThemes"),
              DefaultsValue{DefaultsData{"[]"}});
    EXPECT_EQ(library.defaults.values.at("ChimewerkTheme"), DefaultsValue{std::string("classic")});
    const auto& events = std::get<Dictionary>(library.defaults.values.at("ChimewerkEvents").value);
    EXPECT_EQ(events.size(), 19U);
    EXPECT_EQ(events.at("slap"), (DefaultsValue{Dictionary{{"path", {std::string()}},
                                                           {"volume", {static_cast<double>(0.3F)}},
                                                           {"enabled", {true}},
                                                           {"threshold", {0.0}}}}));

    library->createCustomTheme("n");
    library->setPath("/x", "slap");
    EXPECT_EQ(library.defaults.values.at("ChimewerkActiveCustomTheme"),
              DefaultsValue{std::string("A")});
    EXPECT_EQ(library.defaults.values.at("ChimewerkTheme"), DefaultsValue{std::string("system")});
    EXPECT_EQ(library.defaults.values.at("ChimewerkCustomThemes"),
              DefaultsValue{DefaultsData{R"([{"id":"A","name":"n","sounds":{"slap":"/x"}}])"}});

    library->setTheme(SoundTheme::bit8);
    EXPECT_FALSE(library.defaults.values.contains("ChimewerkActiveCustomTheme"));
    EXPECT_EQ(library.defaults.values.at("ChimewerkTheme"), DefaultsValue{std::string("8bit")});
}

TEST(Settings, ComeBackAsTheyWereButForTheCounts) {
    SoundLibrary library;
    library->setPath("/home/j\xFCrgen/a.wav", "lid_open");
    library->setThreshold(std::numeric_limits<float>::denorm_min(), "lid_angle");
    library->setVolume(-0.0F, "slap");
    library->setEnabled(true, "usb_connect");
    library->play("usb_connect");
    library->setTheme(SoundTheme::system);
    library->createCustomTheme("first");
    library->setPath("/b.wav", "slap");
    library->createCustomTheme("second");
    library->setCustomTheme(library->customThemes.front());

    auto events = library->events;
    for (SoundEvent& event : events) {
        event.triggerCount = 0;
    }
    const auto themes = library->customThemes;
    library.restart();
    EXPECT_EQ(library->events, events);
    EXPECT_TRUE(std::signbit(library.event("slap").volume));
    EXPECT_EQ(library->currentTheme, SoundTheme::system);
    EXPECT_EQ(library->customThemes, themes);
    EXPECT_EQ(library->activeCustomThemeID, "A");
}

TEST(Settings, TakeFromAnEventsEntryWhatIsUsableAndKeepTheFactorysRest) {
    struct Case {
        const char* what;
        Dictionary entry;
        std::vector<SoundEvent> events;
    };
    const auto unchanged = factoryEvents();
    const auto switchedOff = factoryWith([](SoundEvent& e) { e.isEnabled = false; });
    for (const Case& c : {
             Case{"nothing", {}, unchanged},
             Case{"volume alone", {{"volume", {0.25}}}, factoryWith([](auto& e) {
                      e.volume = 0.25F;
                  })},
             Case{"volume rounded to a float", {{"volume", {0.3}}}, factoryWith([](auto& e) {
                      e.volume = 0.3F;
                  })},
             Case{"volume beyond a float", {{"volume", {1e300}}}, factoryWith([](auto& e) {
                      e.volume = std::numeric_limits<float>::infinity();
                  })},
             Case{"volume as text", {{"volume", {std::string("0.25")}}}, unchanged},
             Case{"volume as a boolean", {{"volume", {false}}}, unchanged},
             Case{"threshold", {{"threshold", {-3.5}}}, factoryWith([](auto& e) {
                      e.threshold = -3.5F;
                  })},
             Case{"threshold as a dictionary", {{"threshold", {Dictionary{}}}}, unchanged},
             Case{"switched off", {{"enabled", {false}}}, switchedOff},
             Case{"switched off by 0", {{"enabled", {0.0}}}, switchedOff},
             Case{"switched off by -0", {{"enabled", {-0.0}}}, switchedOff},
             Case{"switch 2", {{"enabled", {2.0}}}, unchanged},
             Case{"switch almost 1", {{"enabled", {1.00000001}}}, unchanged},
             Case{"switch as text", {{"enabled", {std::string("false")}}}, unchanged},
             Case{"path", {{"path", {std::string("/x")}}}, factoryWith([](auto& e) {
                      e.soundPath = "/x";
                  })},
             Case{"empty path", {{"path", {std::string()}}}, unchanged},
             Case{"path as bytes", {{"path", {DefaultsData{"/x"}}}}, unchanged},
         }) {
        SoundLibrary library;
        library.defaults.values["ChimewerkEvents"] = {
            Dictionary{{"slap", {c.entry}}, {"no_such", {Dictionary{}}}}};
        library.restart();
        EXPECT_EQ(library->events, c.events) << c.what;
        EXPECT_EQ(library.defaults.changes, 0) << c.what;
    }
    SoundLibrary library;
    library.defaults.values["ChimewerkEvents"] = {
        Dictionary{{"lid_angle", {Dictionary{{"enabled", {1.0}}}}}}};
    library.restart();
    EXPECT_EQ(library->events, factoryWith([](auto& e) { e.isEnabled = true; }, "lid_angle"));
}

TEST(Settings, OfTheEventsAreAllRefusedWhenOneIsNoDictionary) {
    const DefaultsValue good{Dictionary{{"volume", {0.25}}}};
    for (const DefaultsValue& bad : {DefaultsValue{std::string("x")}, DefaultsValue{1.0},
                                     DefaultsValue{true}, DefaultsValue{DefaultsData{"{}"}}}) {
        for (const char* const id : {"lid_open", "zzz_unknown"}) {
            SoundLibrary library;
            library.defaults.values["ChimewerkEvents"] = {Dictionary{{"slap", good}, {id, bad}}};
            library.restart();
            EXPECT_EQ(library->events, factoryEvents());
            EXPECT_EQ(library.defaults.damages, 1);
        }
        SoundLibrary library;
        library.defaults.values["ChimewerkEvents"] = bad;
        library.restart();
        EXPECT_EQ(library->events, factoryEvents());
        EXPECT_EQ(library.defaults.damages, 1);
    }
}

TEST(Settings, KeepClassicUnlessTheThemeIsExactlyOneOfTheSeven) {
    for (const SoundTheme theme : kAllThemes) {
        SoundLibrary library;
        library.defaults.values["ChimewerkTheme"] = {std::string(rawValue(theme))};
        library.restart();
        EXPECT_EQ(library->currentTheme, theme);
    }
    for (const DefaultsValue& bad :
         {DefaultsValue{std::string("Soft")}, DefaultsValue{std::string("")},
          DefaultsValue{DefaultsData{"soft"}}, DefaultsValue{2.0}}) {
        SoundLibrary library;
        library.defaults.values["ChimewerkTheme"] = bad;
        library.restart();
        EXPECT_EQ(library->currentTheme, SoundTheme::classic);
    }
}

TEST(Settings, SelectTheStoredCustomThemeOnlyIfItIsThere) {
    const std::string themes = R"([{"id":"A","name":"","sounds":{"lid_open":"/a","lid_close":""}},
                                   {"id":"A","name":"second","sounds":{"slap":"/never"}}])";
    struct Case {
        const char* what;
        DefaultsValue themes;
        DefaultsValue selected;
        bool custom;
        std::size_t themeCount;
    };
    for (const Case& c : {
             Case{"there", {DefaultsData{themes}}, {std::string("A")}, true, 2},
             Case{"deleted", {DefaultsData{themes}}, {std::string("B")}, false, 2},
             Case{"another letter case", {DefaultsData{themes}}, {std::string("a")}, false, 2},
             Case{"selection of another type",
                  {DefaultsData{themes}},
                  {DefaultsData{"A"}},
                  false,
                  2},
             Case{"themes as text", {themes}, {std::string("A")}, false, 0},
             Case{"themes damaged", {DefaultsData{themes + "x"}}, {std::string("A")}, false, 0},
         }) {
        SoundLibrary library;
        library.defaults.values = {
            {"ChimewerkCustomThemes", c.themes},
            {"ChimewerkActiveCustomTheme", c.selected},
            {"ChimewerkTheme", {std::string("soft")}},
            {"ChimewerkEvents",
             {Dictionary{{"slap", {Dictionary{{"path", {std::string("/own")}}}}}}}}};
        library.restart();
        EXPECT_EQ(library->isCustomThemeActive(), c.custom) << c.what;
        EXPECT_EQ(library->currentTheme, c.custom ? SoundTheme::system : SoundTheme::soft)
            << c.what;
        EXPECT_EQ(library->customThemes.size(), c.themeCount) << c.what;
        EXPECT_EQ(library.event("slap").soundPath,
                  c.custom ? std::nullopt : std::optional<std::string>("/own"));
        EXPECT_EQ(library.event("lid_open").soundPath,
                  c.custom ? std::optional<std::string>("/a") : std::nullopt);
        EXPECT_EQ(library.event("lid_close").soundPath, std::nullopt) << c.what;
        EXPECT_EQ(library.defaults.changes, 0) << c.what;
        EXPECT_EQ(library.defaults.damages, c.themeCount == 0 ? 1 : 0) << c.what;

        library->setVolume(1, "slap");
        EXPECT_EQ(library.defaults.values.contains("ChimewerkActiveCustomTheme"), c.custom)
            << c.what;
    }
}

}  // namespace
}  // namespace chimewerk
