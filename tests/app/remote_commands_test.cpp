// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/remote_commands.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "app/options/names.h"

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
          Case{{"--check"}, {Command::check}}, Case{{"--check", "--json"}, {Command::checkAsJson}},
          Case{{"--check", "it"}, {Command::invalid, "\"it\" is too much after --check."}},
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

TEST(TheCheck, SaysHowEachEventIsHeardAndOnceWhatIsMissing) {
    const SourceReport noBattery{.mechanism = "UPower, no battery",
                                 .missing = "This machine has no battery.",
                                 .lacksHardware = true};
    const std::vector<RemoteCheck> checks{
        {.id = "sound_output",
         .label = "Sound Output",
         .isEnabled = false,
         .source = {.mechanism = "pulse: speaker", .missing = "Muted.", .advice = "Unmute it."}},
        {.id = "slap",
         .label = "Single Knock",
         .isEnabled = true,
         .source = {.mechanism = "pulse: alsa_input.pci-0000_00_1f.3-platform.analog-stereo"},
         .secondsAgo = 185.9},
        {.id = "charger_connect",
         .label = "Charger Connect",
         .isEnabled = true,
         .source = noBattery},
        {.id = "charger_disconnect",
         .label = "Charger Disconnect",
         .isEnabled = true,
         .source = noBattery},
        {.id = "battery_low", .label = "Battery Low", .source = noBattery},
        {.id = "trash_add",
         .label = "Trash Item Added",
         .isEnabled = true,
         .source = {.mechanism = "/home/me/.local/share/Trash, /home/men/x"}}};
    const std::string table = checkTable(checks, {.home = "/home/me"});
    EXPECT_EQ(table,
              "EVENT                      AGO    HEARD BY\n"
              "sound_output        muted         pulse: speaker\n"
              "slap                on     3 min  pulse:\n"
              "                                  "
              "alsa_input.pci-0000_00_1f.3-platform.analog-stereo\n"
              "charger_connect     on     -      UPower, no battery\n"
              "charger_disconnect  on     -      UPower, no battery\n"
              "battery_low         off    -      UPower, no battery\n"
              "trash_add           on     -      ~/.local/share/Trash, /home/men/x\n"
              "\n"
              "What is missing:\n"
              "- Sound Output: Muted. Unmute it.\n"
              "- Charger Connect, Charger Disconnect: This machine has no battery.\n");
    EXPECT_NE(checkTable({}, {.isRunning = false}).find("Nothing is missing."), std::string::npos);
    const std::string json = checkJson({checks[1]}, {.isRunning = false});
    EXPECT_NE(json.find("\"running\": false"), std::string::npos) << json;
    EXPECT_NE(json.find("\"seconds_ago\": 185"), std::string::npos) << json;
}

TEST(TheCheck, RoundsTimesDown) {
    const std::pair<std::optional<double>, const char*> spans[] = {
        {std::nullopt, "-"}, {0.9, "0 s"},  {59.9, "59 s"},  {60, "1 min"},
        {3599, "59 min"},    {3600, "1 h"}, {86399, "23 h"}, {200000, "2 d"}};
    for (const auto& [seconds, text] : spans) {
        EXPECT_EQ(spanText(seconds), text);
    }
}

}  // namespace
}  // namespace chimewerk
