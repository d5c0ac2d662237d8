// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/microphone/microphone_choice.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "linux/audio/pulse_handles.h"

namespace chimewerk {
namespace {

using Properties = std::map<std::string, std::string>;

/// A source of the audio server; the texts are literals.
struct Source {
    const char* name;
    Properties properties = {};
    bool monitor = false;
    bool hardware = false;
    bool pluggedIn = true;
    std::uint32_t rate = 48000;
};

std::string choose(const char* defaultSource, const std::vector<Source>& sources,
                   std::uint32_t* rate = nullptr) {
    MicrophoneChoice choice(defaultSource);
    for (const Source& source : sources) {
        const PulseHandle<pa_proplist> properties(pa_proplist_new());
        for (const auto& [name, value] : source.properties) {
            pa_proplist_sets(properties.get(), name.c_str(), value.c_str());
        }
        pa_source_port_info port{};
        port.available = PA_PORT_AVAILABLE_NO;
        pa_source_info info{};
        info.name = source.name;
        info.proplist = properties.get();
        info.monitor_of_sink = source.monitor ? 0 : PA_INVALID_INDEX;
        info.flags = source.hardware ? PA_SOURCE_HARDWARE : PA_SOURCE_NOFLAGS;
        info.active_port = source.pluggedIn ? nullptr : &port;
        info.sample_spec.rate = source.rate;
        pa_channel_map_init_stereo(&info.channel_map);
        choice.consider(info);
    }
    if (rate != nullptr) {
        *rate = choice.best()->rate;
    }
    return choice.best() ? choice.best()->name : "";
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
        {"unplugged", {device, unplugged}, "unplugged"},
        {"monitor", {monitor, filter, device, second}, "device"},
        {"monitor", {unplugged, filter, monitor}, "filter"},
        {"monitor", {unplugged, monitor}, "unplugged"},
        {"", {monitor, second, device}, "second"},
        {"monitor", {monitor}, ""},
        {"", {}, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(choose(c.defaultSource, c.sources), c.chosen)
            << c.defaultSource << " of " << c.sources.size();
    }
}

TEST(TheChoiceOfAMicrophone, PrefersTheComputersOwnAndNeverTakesABluetoothHeadset) {
    // As PulseAudio and PipeWire list them.
    const Source onPulseAudio{.name = "bluez_source.00_1B_66_AA_BB_CC.handsfree_head_unit",
                              .properties = {{"device.api", "bluez"},
                                             {"device.bus", "bluetooth"},
                                             {"device.class", "sound"},
                                             {"device.form_factor", "headset"},
                                             {"bluetooth.protocol", "handsfree_head_unit"}},
                              .hardware = true};
    const Source onPipeWire{.name = "bluez_input.00_1B_66_AA_BB_CC.0",
                            .properties = {{"api.bluez5.profile", "headset-head-unit"},
                                           {"device.api", "bluez5"},
                                           {"device.bus", "bluetooth"},
                                           {"device.form_factor", "headset"}},
                            .hardware = true};
    const Source byNameOnly{.name = "bluez_input.00:1B:66:AA:BB:CC",
                            .properties = {{"bluez5.loopback", "true"}}};
    const Source byPropertyOnly{.name = "Headset", .properties = {{"device.api", "bluez5"}}};
    const Source echoCancelled{
        .name = "echo-cancel",
        .properties = {
            {"device.master_device", "bluez_source.00_1B_66_AA_BB_CC.handsfree_head_unit"}}};
    const Source codec{.name = "alsa_input.pci-0000_00_1f.3.analog-stereo",
                       .properties = {{"device.api", "alsa"},
                                      {"device.bus", "pci"},
                                      {"device.form_factor", "internal"}},
                       .hardware = true};
    const Source digital{.name = "alsa_input.platform-sound.HiFi__hw_0__source",
                         .properties = {{"device.api", "alsa"}, {"device.bus", "platform"}},
                         .hardware = true};
    const Source camera{.name = "alsa_input.usb-046d_HD_Pro_Webcam_C920-02.analog-stereo",
                        .properties = {{"device.api", "alsa"},
                                       {"device.bus", "usb"},
                                       {"device.form_factor", "webcam"}},
                        .hardware = true};
    const Source headset{.name = "alsa_input.usb-Logitech_G433_Gaming_Headset-00.mono-fallback",
                         .properties = {{"device.api", "alsa"}, {"device.bus", "usb"}},
                         .hardware = true};
    const Source loopback{.name = "alsa_output.pci-0000_00_1f.3.analog-stereo.monitor",
                          .properties = {{"device.api", "alsa"},
                                         {"device.bus", "pci"},
                                         {"device.class", "monitor"},
                                         {"device.form_factor", "internal"}}};
    Source emptyJack = codec;
    emptyJack.pluggedIn = false;
    for (const Source& bluetooth :
         {onPulseAudio, onPipeWire, byNameOnly, byPropertyOnly, echoCancelled}) {
        EXPECT_EQ(choose(bluetooth.name, {bluetooth}), "") << bluetooth.name;
        EXPECT_EQ(choose(bluetooth.name, {bluetooth, camera, loopback}), camera.name);
        EXPECT_EQ(choose(bluetooth.name, {headset, bluetooth, codec}), codec.name);
    }
    EXPECT_EQ(choose(headset.name, {headset, codec, camera}), codec.name);
    EXPECT_EQ(choose(camera.name, {camera, digital}), digital.name);
    EXPECT_EQ(choose(digital.name, {codec, digital}), digital.name);
    EXPECT_EQ(choose(headset.name, {emptyJack, camera, headset}), headset.name);
    EXPECT_EQ(choose(loopback.name, {loopback}), "");
}

TEST(TheChoiceOfAMicrophone, TakesTheSourcesOwnRateUnlessNoMicrophoneHasIt) {
    for (const auto& [own, taken] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{
             {8000, 8000}, {44100, 44100}, {96000, 96000}, {1, 48000}, {384000, 48000}}) {
        std::uint32_t rate = 0;
        choose("device", {{.name = "device", .rate = own}}, &rate);
        EXPECT_EQ(rate, taken);
    }
}

}  // namespace
}  // namespace chimewerk
