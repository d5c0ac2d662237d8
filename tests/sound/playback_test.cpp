// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "sound/notifications.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

using Play = FakeSoundService::Play;
using Plays = std::vector<Play>;

class Playback : public testing::Test {
protected:
    Playback() {
        for (const char* const name : {"Funk", "Tink", "Purr"}) {
            sounds.addNamedSound(name);
        }
    }

    /// Returns the sounds played since the last call.
    Plays played() {
        Plays fresh(sounds.plays().begin() + static_cast<std::ptrdiff_t>(seen_),
                    sounds.plays().end());
        seen_ = sounds.plays().size();
        return fresh;
    }
    SoundEvent& event(std::string_view id) { return library.event(id); }

    SoundLibrary library;
    VirtualMainQueue& queue = library.queue;
    FakeSoundService& sounds = library.sounds;
    std::vector<std::string> announced;
    NotificationCenter::Subscription counting =
        library.notifications.observe(eventCounterUpdated, [this](const Notification& n) {
            announced.push_back(std::any_cast<std::string>(n.object));
        });

private:
    std::size_t seen_ = 0;
};

TEST_F(Playback, CountsAndAnnouncesAnEnabledEventAfterTheCallEvenIfNothingCanPlay) {
    event("slap").systemFallback = "No Such Sound";
    library->play("slap");
    library->play("slap");
    EXPECT_EQ(event("slap").triggerCount, 2);
    EXPECT_TRUE(announced.empty());
    queue.runPosted();
    EXPECT_EQ(announced, (std::vector<std::string>{"slap", "slap"}));
    EXPECT_EQ(played(), Plays{});
}

TEST_F(Playback, IgnoresUnknownAndDisabledEvents) {
    library->play("no_such_event");
    library->play("lid_angle");
    library->playKey(0);
    queue.runPosted();
    EXPECT_EQ(played(), Plays{});
    EXPECT_TRUE(announced.empty());
    EXPECT_EQ(event("lid_angle").triggerCount, 0);
    EXPECT_EQ(event("key_press").triggerCount, 0);
}

TEST_F(Playback, PlaysTheFirstSourceThatHasASound) {
    // Removes the sources from the first to the last; each time the next one plays.
    library->currentTheme = SoundTheme::bit8;
    event("slap").soundPath = "/own.ogg";
    event("slap").volume = 0.7F;
    const std::vector<std::string> inOrder = {"/own.ogg", "/res/t_8bit_slap.wav", "/res/slap.wav",
                                              "/res/slap.mp3"};
    for (const auto& path : inOrder) {
        sounds.addFile(path);
    }
    for (const auto& path : inOrder) {
        library->play("slap");
        EXPECT_EQ(played(), (Plays{{path, 0.7F}}));
        sounds.removeFile(path);
        sounds.addUndecodableFile(path);
    }
    library->play("slap");
    EXPECT_EQ(played(), (Plays{{"Funk", 0.7F}}));
    EXPECT_EQ(event("slap").soundPath, "/own.ogg");
}

TEST_F(Playback, SkipsTheThemesFilesForSystemAndForACustomTheme) {
    sounds.addFile("/res/t_classic_slap.wav");
    library->play("slap");
    EXPECT_EQ(played(), (Plays{{"/res/t_classic_slap.wav", 1.0F}}));

    library->activeCustomThemeID = "A";
    library->play("slap");
    EXPECT_EQ(played(), (Plays{{"Funk", 1.0F}}));

    library->activeCustomThemeID.reset();
    library->currentTheme = SoundTheme::system;
    sounds.addFile("/res/t_system_slap.wav");
    event("slap").soundPath = "";
    library->play("slap");
    EXPECT_EQ(played(), (Plays{{"Funk", 1.0F}}));
}

TEST_F(Playback, PlaysAnyEventThatItIsPassedWithoutCounting) {
    SoundEvent passed = event("lid_angle");
    passed.volume = 0.25F;
    passed.soundPath = "/mine.wav";
    sounds.addFile("/mine.wav");
    library->playEvent(passed);
    queue.runPosted();
    EXPECT_EQ(played(), (Plays{{"/mine.wav", 0.25F}}));
    EXPECT_EQ(event("lid_angle").triggerCount, 0);
    EXPECT_TRUE(announced.empty());
}

TEST_F(Playback, StartsNothingButCountsWhileItIsMuted) {
    event("key_press").isEnabled = true;
    sounds.addFile("/res/t_classic_slap.wav");
    for (const bool muted : {true, false}) {
        library->setMuted(muted);
        library->play("slap");
        library->playKey(0);
        library->playEvent(event("slap"));
        library->previewTheme(SoundTheme::classic);
        EXPECT_EQ(played().size(), muted ? 0U : 4U);
    }
    EXPECT_EQ(event("slap").triggerCount, 2);
    EXPECT_EQ(event("key_press").triggerCount, 2);
}

TEST_F(Playback, PlaysAUsersFileForEveryKeyElseChoosesTheSoundByKeyCode) {
    event("key_press").isEnabled = true;
    event("key_press").soundPath = "/own.wav";
    sounds.addFile("/res/key_press.wav");
    struct Case {
        std::int64_t keyCode;
        std::string sound;
    };
    for (const Case& key :
         {Case{49, "key_space"}, Case{36, "key_return"}, Case{76, "key_return"},
          Case{0, "key_click"}, Case{-1, "key_click"}, Case{std::int64_t{49} << 32, "key_click"}}) {
        const std::vector<std::string> inOrder = {"/own.wav", "/res/t_piano_" + key.sound + ".wav",
                                                  "/res/" + key.sound + ".wav",
                                                  "/res/" + key.sound + ".mp3"};
        library->currentTheme = SoundTheme::piano;
        for (const auto& path : inOrder) {
            sounds.addFile(path);
        }
        for (const auto& path : inOrder) {
            library->playKey(key.keyCode);
            EXPECT_EQ(played(), (Plays{{path, 0.3F}})) << key.keyCode;
            sounds.removeFile(path);
        }
        library->playKey(key.keyCode);
        EXPECT_EQ(played(), (Plays{{"Tink", 0.3F}})) << key.keyCode;
    }
    queue.runPosted();
    EXPECT_EQ(announced.size(), 30U);
    EXPECT_EQ(announced.front(), "key_press");
}

TEST_F(Playback, PreviewsAThemeWhateverTheSettingsOfTheKnock) {
    event("slap").isEnabled = false;
    event("slap").soundPath = "/own.wav";
    sounds.addFile("/own.wav");
    sounds.addFile("/res/t_soft_slap.wav");
    sounds.addFile("/res/slap.wav");
    library->previewTheme(SoundTheme::soft);
    EXPECT_EQ(played(), (Plays{{"/res/t_soft_slap.wav", 0.6F}}));
    library->previewTheme(SoundTheme::system);
    library->previewTheme(SoundTheme::scifi);
    queue.runPosted();
    EXPECT_EQ(played(), Plays{});
    EXPECT_TRUE(announced.empty());
}

TEST_F(Playback, KeepsEachSoundForItsDurationAndATenthOfASecondMore) {
    sounds.addFile("/short.wav", Seconds{0.05});
    sounds.addFile("/long.wav", Seconds{2.0});
    event("slap").soundPath = "/short.wav";
    event("lid_open").soundPath = "/long.wav";
    library->play("slap");
    library->play("lid_open");
    EXPECT_EQ(library->playing().size(), 2U);

    queue.advance(Seconds{0.29});
    EXPECT_EQ(library->playing().size(), 2U);
    queue.advance(Seconds{0.02});
    EXPECT_EQ(library->playing().size(), 1U);
    queue.advance(Seconds{1.78});
    EXPECT_EQ(library->playing().size(), 1U);
    queue.advance(Seconds{0.02});
    EXPECT_EQ(library->playing().size(), 0U);
}

TEST_F(Playback, OverlapsPlaysOfOneEventAndReleasesEachByItself) {
    for (int i = 0; i < 3; ++i) {
        library->play("slap");
        queue.advance(Seconds{0.1});
    }
    EXPECT_EQ(library->playing().size(), 3U);
    queue.advance(Seconds{0.35});
    EXPECT_EQ(library->playing().size(), 2U);
    library.restart();
    queue.advance(Seconds{1.0});
    EXPECT_EQ(queue.queued(), 0U);
}

}  // namespace
}  // namespace chimewerk
