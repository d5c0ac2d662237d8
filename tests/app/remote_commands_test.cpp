// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/remote_commands.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "app/names.h"

namespace chimewerk {
namespace {

CommandLine parse(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    return parseCommandLine(arguments);
}

TEST(TheCommandLine, ReadsAnOptionWithItsArgumentOrSaysWhatIsWrong) {
    struct Case {
        std::vector<std::string> words;
        CommandLine read;
    };
    for (const Case& c :
         {Case{{}, {Command::run}}, Case{{"-h"}, {Command::printUsage}},
          Case{{"--toggle-mute"}, {Command::toggleMute}},
          Case{{"--play", "trash_add"}, {Command::play, "trash_add"}},
          Case{{"--theme=My Theme = mine"}, {Command::selectTheme, "My Theme = mine"}},
          Case{{"-session", "10f1a"}, {Command::background}},
          Case{{"--microphone", "deny"}, {Command::denyMicrophone}},
          Case{{"--microphone", "maybe"},
               {Command::invalid, "--microphone needs allow or deny after it."}},
          Case{{"--enable"},
               {Command::invalid, "--enable needs the name of an event; --list shows them."}},
          Case{{"--mute", "now"}, {Command::invalid, "\"now\" is too much after --mute."}},
          Case{{"--mute="}, {Command::invalid, "\"\" is too much after --mute."}},
          Case{{"--hlep"},
               {Command::invalid,
                "There is no option \"--hlep\". Did you mean --help, --play or --quit?"}},
          Case{{"unmute"},
               {Command::invalid,
                "There is no option \"unmute\". Did you mean --unmute, --mute or --enable?"}}}) {
        const CommandLine read = parse(c.words);
        EXPECT_EQ(read, c.read) << read.argument;
    }
}

TEST(TheNames, AreFoundAsTheyAreShownAndOtherwiseGuessed) {
    const std::vector<Name> names{
        {"lid_open", "Lid Open"},        {"slap", "Single Knock"},
        {"trash_empty", "Empty Trash"},  {"trash_add", "Trash Item Added"},
        {"volume_up", "Volume Up"},      {"volume_down", "Volume Down"},
        {"usb_connect", "USB Connected"}};
    const std::pair<const char*, std::optional<std::size_t>> found[] = {
        {"lid_open", 0}, {"Lid Open", 0}, {"single-knock", 1}, {"", {}}, {"lid", {}}};
    for (const auto& [typed, index] : found) {
        EXPECT_EQ(findName(typed, names), index) << typed;
    }
    const std::pair<const char*, std::vector<std::string>> likely[] = {
        {"volume", {"volume_up", "volume_down"}},
        {"knock", {"slap"}},
        {"trash_emtpy", {"trash_empty", "trash_add"}}};
    for (const auto& [typed, wanted] : likely) {
        std::vector<std::string> guessed = likelyNames(typed, names);
        EXPECT_EQ(guessed.size(), 3U);
        guessed.resize(wanted.size());
        EXPECT_EQ(guessed, wanted) << typed;
    }
    const std::vector<Name> exact{{"Piano 2"}, {"piano2"}};
    EXPECT_EQ(findName("piano2", exact), 1U) << "the exact one comes first";
}

TEST(TheList, IsATableWithTheThemesBelow) {
    EXPECT_EQ(
        listOf(
            {.isMuted = true,
             .theme = "Night",
             .themes = {"system", "Night"},
             .events = {{.id = "slap",
                         .label = "Single Knock",
                         .isEnabled = true,
                         .volume = 1.0,
                         .sound = "/home/me/wörk/knock.wav"},
                        {.id = "lid_open", .label = "Dëckel", .volume = 0.305, .sound = "Basso"}}}),
        "EVENT     NAME               VOLUME  SOUND\n"
        "slap      Single Knock  on   100 %   knock.wav\n"
        "lid_open  Dëckel        off  31 %    Basso\n"
        "\n"
        "Themes: system, Night\n"
        "Selected: Night\n"
        "Muted: chimewerk --unmute lets it sound again.\n");
}

}  // namespace
}  // namespace chimewerk
