// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/microphone_choice.h"

#include <gtest/gtest.h>

#include <vector>

namespace chimewerk {
namespace {

/// A source of the audio server; the texts are literals.
struct Source {
    const char* name;
    bool monitor = false;
    bool hardware = false;
    bool pluggedIn = true;
    std::uint32_t rate = 48000;
};

std::optional<MicrophoneSource> choose(const char* defaultSource,
                                       const std::vector<Source>& sources) {
    MicrophoneChoice choice(defaultSource);
    for (const Source& source : sources) {
        pa_source_port_info port{};
        port.available = PA_PORT_AVAILABLE_NO;
        pa_source_info info{};
        info.name = source.name;
        info.monitor_of_sink = source.monitor ? 0 : PA_INVALID_INDEX;
        info.flags = source.hardware ? PA_SOURCE_HARDWARE : PA_SOURCE_NOFLAGS;
        info.active_port = source.pluggedIn ? nullptr : &port;
        info.sample_spec.rate = source.rate;
        pa_channel_map_init_stereo(&info.channel_map);
        choice.consider(info);
    }
    return choice.best();
}

TEST(TheChoiceOfAMicrophone, IsTheDefaultUnlessThatIsAMonitor) {
    const Source monitor{.name = "monitor", .monitor = true, .hardware = true};
    const Source filter{.name = "filter"};
    const Source device{.name = "device", .hardware = true};
    const Source second{.name = "second", .hardware = true};
    const Source unplugged{.name = "unplugged", .hardware = true, .pluggedIn = false};
    struct Case {
        const char* defaultSource;
        std::vector<Source> sources;
        const char* chosen;
    };
    const Case cases[] = {
        {"filter", {monitor, device, filter}, "filter"},
        {"filter", {filter, monitor, device}, "filter"},
        {"unplugged", {device, unplugged}, "unplugged"},
        {"monitor", {monitor, filter, device, second}, "device"},
        {"monitor", {unplugged, filter, monitor}, "filter"},
        {"monitor", {unplugged, monitor}, "unplugged"},
        {"", {monitor, second, device}, "second"},
        {"monitor", {monitor}, ""},
        {"", {}, ""},
    };
    for (const Case& c : cases) {
        const auto chosen = choose(c.defaultSource, c.sources);
        EXPECT_EQ(chosen ? chosen->name : "", c.chosen)
            << c.defaultSource << " of " << c.sources.size();
    }
}

TEST(TheChoiceOfAMicrophone, TakesTheSourcesOwnRateUnlessNoMicrophoneHasIt) {
    for (const auto& [own, taken] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{
             {8000, 8000}, {44100, 44100}, {96000, 96000}, {1, 48000}, {384000, 48000}}) {
        EXPECT_EQ(choose("device", {{.name = "device", .rate = own}})->rate, taken);
    }
}

}  // namespace
}  // namespace chimewerk
