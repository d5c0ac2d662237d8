#include "ui/rules/detail_view.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "sound/sound_event.h"
#include "support/fake_sound_service.h"

namespace chimewerk {
namespace {

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
          Case{"/", "📁 /"}, Case{"relative.wav", "📁 relative.wav"}, Case{any, "📁 \xff\xfe.wav"}}) {
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

TEST_F(TheDetailView, HasABoxForFourEvents) {
    for (const SoundEvent& event : events) {
        const DetailBox box = event.id == "lid_angle"     ? DetailBox::threshold
                              : event.id == "key_press"   ? DetailBox::permission
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
    EXPECT_TRUE(show("lid_angle").thresholdIsEnabled);
    EXPECT_EQ(show("lid_angle").threshold, 47.9F);
    EXPECT_EQ(show("lid_angle").thresholdText, "47°");
    EXPECT_EQ(show("lid_angle").triggerText,
              "Plays when the lid crosses the angle threshold below (sensor active ✓).");
    facts.sensorFound = false;
    EXPECT_FALSE(show("lid_angle").thresholdIsEnabled);
    EXPECT_EQ(
        show("lid_angle").triggerText,
        "⚠️ Sensor not found on this Mac — requires Apple Silicon (M1 or later). Lid angle detection is not available on Intel Macs.");
}

TEST_F(TheDetailView, TellsTheBatterysThresholdInTheListNotInTheRecord) {
    SoundEvent copy = event("battery_low");
    EXPECT_EQ(show("battery_low").thresholdText, "20%");
    event("battery_low").threshold = 15.9F;
    EXPECT_EQ(show("battery_low").thresholdText, "15%");
    EXPECT_EQ(
        triggerDesc(copy, facts),
        "Plays once when battery drops to or below 15% while unplugged. Threshold adjustable via the slider.");
    events.clear();
    EXPECT_EQ(
        triggerDesc(copy, facts),
        "Plays once when battery drops to or below 20% while unplugged. Threshold adjustable via the slider.");
}

TEST_F(TheDetailView, AsksForThePermissionToHearKeysOnlyWithoutIt) {
    struct Case {
        bool tap;
        bool trusted;
        std::string text;
    };
    const std::string active =
        "Tap active ✓ — vintage mechanical click on every keypress (regular, Space, Return variants).";
    for (
        const auto& [tap, trusted, text] :
        {Case{true, true, active}, Case{true, false, active},
         Case{false, true,
              "Vintage mechanical click on every keypress. Waiting for tap to initialize…"},
         Case{
             false, false,
             "⚠️ Accessibility access required. Click \"Open Accessibility Settings…\" below. If Chimewerk is already in the list, remove it (−) first, then relaunch the app."}}) {
        facts.tapActive = tap;
        facts.trusted = trusted;
        EXPECT_EQ(show("key_press").triggerText, text) << tap << trusted;
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
