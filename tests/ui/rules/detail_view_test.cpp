// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/detail_view.h"

#include <gmock/gmock.h>

#include <utility>

#include "sound/sound_event.h"
#include "support/fake_sound_service.h"

namespace chimewerk {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class TheDetailView : public testing::Test {
protected:
    SoundEvent& event(std::string_view id) {
        for (SoundEvent& event : events) {
            if (event.id == id) {
                return event;
            }
        }
        throw std::out_of_range("no such event");
    }
    DetailView show(std::string_view id) { return detailView(event(id), facts); }
    DetailView showWithPath(const std::string& path) {
        event("slap").soundPath = path;
        return show("slap");
    }

    std::vector<SoundEvent> events = factoryEvents();
    FakeSoundService files;
    DetailFacts facts{.events = events,
                      .currentTheme = SoundTheme::classic,
                      .files = files,
                      .resourceFolder = "/res",
                      .isAppleSilicon = true,
                      .sensorFound = true,
                      .trusted = true,
                      .tapActive = true};
};

TEST_F(TheDetailView, NamesTheEventsOwnFileWhileItExists) {
    facts.isCustomThemeActive = true;
    struct Case {
        std::string path;
        std::string text;
    };
    const std::string any = "/home/x/\xff\xfe.wav";
    for (const auto& [path, text] :
         {Case{"/Users/a/knock.wav", "📁 knock.wav"}, Case{"/a folder/", "📁 a folder"},
          Case{"/", "📁 /"}, Case{"//", "📁 /"}, Case{"relative.wav", "📁 relative.wav"},
          Case{any, "📁 \xff\xfe.wav"}}) {
        files.addFile(path);
        EXPECT_EQ(showWithPath(path).soundText, text);
        EXPECT_TRUE(showWithPath(path).hasOwnSound) << path;
        files.removeFile(path);
        EXPECT_EQ(showWithPath(path).soundText, "— not set — (click Load to add)") << path;
        EXPECT_FALSE(showWithPath(path).hasOwnSound) << path;
    }
    files.addFile("");
    EXPECT_FALSE(showWithPath("").hasOwnSound);
}

TEST_F(TheDetailView, NamesWhatPlaysInTheAbsenceOfAnOwnFile) {
    struct Case {
        const char* name;
        SoundTheme theme;
        std::string_view resourceFolder;
        std::vector<std::string> existing;
        std::string text;
    };
    const Case cases[] = {
        {"theme", SoundTheme::classic, "/res", {"/res/t_classic_slap.wav"}, "🍎 Classic"},
        {"raw value", SoundTheme::bit8, "/res", {"/res/t_8bit_slap.wav"}, "🎮 8-bit"},
        {"not by mp3", SoundTheme::classic, "/res", {"/res/t_classic_slap.mp3"}, "System (Funk)"},
        {"not bundled", SoundTheme::classic, "/res", {"/res/slap.wav"}, "System (Funk)"},
        {"no folder, no test", SoundTheme::classic, "", {"/t_classic_slap.wav"}, "System (Funk)"},
        {"bundled wav", SoundTheme::system, "/res", {"/res/slap.wav"}, "Bundled default"},
        {"bundled mp3", SoundTheme::system, "/res", {"/res/slap.mp3"}, "Bundled default"},
        {"no folder", SoundTheme::system, "", {"/slap.mp3"}, "Bundled default"},
        {"another's", SoundTheme::system, "/res", {"/res/lid_open.wav"}, "System (Funk)"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        facts.currentTheme = one.theme;
        facts.resourceFolder = one.resourceFolder;
        for (const std::string& file : one.existing) {
            files.addFile(file);
        }
        EXPECT_EQ(show("slap").soundText, one.text);
        EXPECT_FALSE(show("slap").hasOwnSound);
        for (const std::string& file : one.existing) {
            files.removeFile(file);
        }
    }
    facts.currentTheme = SoundTheme::system;
    EXPECT_EQ(show("battery_low").soundText, "System (Sosumi)");
}

TEST_F(TheDetailView, DimsAnEventThatIsOffAndShowsItsCount) {
    event("slap").triggerCount = 2;
    EXPECT_EQ(show("slap").alpha, 1.0);
    EXPECT_TRUE(show("slap").switchIsOn);
    EXPECT_EQ(show("slap").counterText, "Triggered: 2 times");
    EXPECT_EQ(show("slap").emoji, "👊");
    EXPECT_EQ(show("slap").title, "Single Knock");
    event("slap").isEnabled = false;
    EXPECT_EQ(show("slap").alpha, 0.6);
    EXPECT_FALSE(show("slap").switchIsOn);
    EXPECT_TRUE(show("slap").switchIsEnabled);
}

TEST_F(TheDetailView, HasABoxForFiveEvents) {
    for (const SoundEvent& event : events) {
        const DetailBox box = event.id == "lid_angle"     ? DetailBox::threshold
                              : event.id == "key_press"   ? DetailBox::permission
                              : event.id == "slap"        ? DetailBox::microphone
                              : event.id == "battery_low" ? DetailBox::batteryThreshold
                                                          : DetailBox::none;
        EXPECT_EQ(show(event.id).box, box) << event.id;
    }
}

TEST_F(TheDetailView, LocksTheLidAngleWhereItCannotWork) {
    facts.isAppleSilicon = false;
    event("lid_angle").isEnabled = true;
    const DetailView view = show("lid_angle");
    EXPECT_EQ(view.box, DetailBox::intelLock);
    EXPECT_FALSE(view.switchIsEnabled);
    EXPECT_FALSE(view.switchIsOn);
    EXPECT_EQ(view.alpha, 1.0) << "the stored switch tells";
    EXPECT_TRUE(show("slap").switchIsEnabled);
}

TEST_F(TheDetailView, LetsTheAngleBeSetOnlyWithASensor) {
    event("lid_angle").threshold = 47.9F;
    for (const auto& [sensorFound, text] :
         {std::pair{true, "Plays when the lid"}, {false, "⚠️ Sensor not found"}}) {
        facts.sensorFound = sensorFound;
        EXPECT_EQ(show("lid_angle").thresholdIsEnabled, sensorFound);
        EXPECT_EQ(show("lid_angle").threshold, 47.9F);
        EXPECT_EQ(show("lid_angle").thresholdText, "47°");
        EXPECT_THAT(show("lid_angle").triggerText, StartsWith(text));
    }
}

TEST_F(TheDetailView, NamesTheBatterysThresholdInTheListNotInTheRecord) {
    const SoundEvent copy = event("battery_low");
    event("battery_low").threshold = 15.9F;
    EXPECT_EQ(show("battery_low").thresholdText, "15%");
    EXPECT_THAT(triggerDesc(copy, facts), HasSubstr(" 15% "));
    events.clear();
    EXPECT_THAT(triggerDesc(copy, facts), HasSubstr(" 20% "));
}

TEST_F(TheDetailView, AsksForThePermissionToHearKeysOnlyWithoutIt) {
    struct Case {
        bool tap;
        bool trusted;
        const char* text;
    };
    for (const auto& [tap, trusted, text] :
         {Case{true, true, "Tap active ✓"}, Case{true, false, "Tap active ✓"},
          Case{false, true, "Vintage mechanical click"},
          Case{false, false, "⚠️ Accessibility access required."}}) {
        facts.tapActive = tap;
        facts.trusted = trusted;
        EXPECT_THAT(show("key_press").triggerText, StartsWith(text)) << tap << trusted;
        EXPECT_EQ(show("key_press").canGrant, !trusted) << tap << trusted;
    }
}

TEST_F(TheDetailView, DescribesEveryEventAndNoOther) {
    for (const SoundEvent& event : events) {
        EXPECT_NE(triggerDesc(event, facts), "") << event.id;
    }
    SoundEvent unknown = events.front();
    unknown.id = "Slap";
    EXPECT_EQ(triggerDesc(unknown, facts), "");
}

}  // namespace
}  // namespace chimewerk
