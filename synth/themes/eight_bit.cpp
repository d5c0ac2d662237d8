// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>
#include <vector>

#include "synth/blocks/noise.h"
#include "synth/blocks/oscillators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The 8-bit theme: two pulse channels, a stepped triangle and a shift register, with volumes of
// 16 steps.
namespace chimewerk::themes {
namespace {

using namespace synth;

// A volume register that counts down from 15 to 0.
Curve countdown(double seconds) {
    return Curve(
        [=](double now) { return std::max(0.0, std::ceil(15.0 * (1.0 - now / seconds)) / 15.0); });
}

// Holds full volume, then counts down.
Curve held(double hold, double fall) {
    return Curve(
        [=, down = countdown(fall)](double now) { return now < hold ? 1.0 : down(now - hold); });
}

Sound pulse(const Curve& hertz, double duty, double seconds) {
    return pulseTone(seconds, hertz, duty) * countdown(seconds);
}

Sound bass(const Curve& hertz, double seconds) {
    return steppedTriangle(seconds, hertz) * countdown(seconds);
}

Sound hiss(const Curve& hertz, double seconds) {
    return registerNoise(seconds, hertz, RegisterLoop::full) * countdown(seconds);
}

Sound clank(const Curve& hertz, double seconds) {
    return registerNoise(seconds, hertz, RegisterLoop::short93) * countdown(seconds);
}

// The lead voice: an arpeggio with a held last note. It is thin at first and fuller at each step.
Sound arpeggio(std::vector<double> notes, double each, double fall) {
    const double run = each * static_cast<double>(notes.size());
    const double seconds = run + fall;
    return pulseTone(seconds, steps(std::move(notes), each),
                     steps({0.125, 0.25, 0.5, 0.25}, run / 3.0)) *
           held(run, fall);
}

Sound slap() {
    return bass(glide(420, 50, 0.14), 0.24) + hiss(glide(24000, 4000, 0.1), 0.11) * 0.8;
}

Sound lidOpen() {
    return arpeggio({"C5"_hz, "E5"_hz, "G5"_hz, "C6"_hz}, 0.07, 0.34) * 0.7 +
           steppedTriangle(0.62, steps({"C3"_hz, "G3"_hz, "C4"_hz}, 0.14)) * held(0.28, 0.34);
}

Sound lidClose() {
    return arpeggio({"C6"_hz, "A5"_hz, "F5"_hz, "C5"_hz, "F4"_hz}, 0.055, 0.22) * 0.7 +
           steppedTriangle(0.49, steps({"F3"_hz, "C3"_hz, "F2"_hz}, 0.14)) * held(0.28, 0.21);
}

Sound lidAngle() {
    const Curve trill = steps({"E5"_hz, "A5"_hz, "E5"_hz, "A5"_hz, "E5"_hz, "A5"_hz}, 0.045);
    return pulseTone(0.5, wobble(trill, 7, 0.25), ramp(0.5, 0.125, 0.4)) * held(0.2, 0.3);
}

Sound chargerConnect() {
    Sound coins = pulse("B4"_hz, 0.5, 0.09);
    coins.add(0.08, pulse("E5"_hz, 0.25, 0.09)).add(0.16, pulse("B5"_hz, 0.25, 0.09));
    coins.add(0.24, pulseTone(0.45, "E6"_hz, ramp(0.5, 0.125, 0.3)) * countdown(0.45));
    return coins + bass(glide(80, 330, 0.3), 0.4) * 0.8;
}

Sound chargerDisconnect() {
    Sound drop = pulse("E6"_hz, 0.25, 0.09);
    drop.add(0.08, pulse("B5"_hz, 0.25, 0.1)).add(0.17, pulse("E5"_hz, 0.5, 0.12));
    return drop.add(0.27, pulse(glide("B4"_hz, "E3"_hz, 0.3), 0.5, 0.36)) +
           bass(glide(330, 60, 0.4), 0.55) * 0.8;
}

Sound brightnessUp() {
    return pulseTone(0.26, steps({"G5"_hz, "B5"_hz, "D6"_hz}, 0.05),
                     steps({0.5, 0.25, 0.125}, 0.05)) *
           held(0.1, 0.16);
}

Sound brightnessDown() {
    return pulseTone(0.26, steps({"D6"_hz, "B5"_hz, "G5"_hz}, 0.05),
                     steps({0.125, 0.25, 0.5}, 0.05)) *
           held(0.1, 0.16);
}

// A lead and a bass an octave below, gliding together.
Sound slide(double from, double to) {
    const Curve hertz = glide(from, to, 0.13);
    return pulse(hertz, 0.5, 0.2) + bass(hertz * 0.5, 0.2);
}

Sound volumeUp() {
    return slide("A4"_hz, "A5"_hz);
}

Sound volumeDown() {
    return slide("A5"_hz, "A4"_hz);
}

Sound screenshot() {
    Sound shutter = hiss(30000, 0.045);
    shutter.add(0.075, hiss(14000, 0.09));
    return shutter.add(0.09, pulse("C7"_hz, 0.125, 0.18), 0.5);
}

Sound appLaunch() {
    Sound leap = pulse(glide(180, 1100, 0.2), 0.5, 0.26);
    return leap.add(0.2, arpeggio({"G5"_hz, "C6"_hz, "E6"_hz, "G6"_hz}, 0.045, 0.3), 0.8);
}

Sound trashEmpty() {
    return hiss(glide(26000, 900, 0.8), 0.9) + bass(glide(260, 32, 0.7), 0.8) * 0.9 +
           pulse(glide(900, 70, 0.5), 0.125, 0.55) * 0.3;
}

Sound trashAdd() {
    Sound toss = pulse(glide("E5"_hz, "A5"_hz, 0.07), 0.25, 0.1);
    toss.add(0.1, pulse(glide("G5"_hz, "C5"_hz, 0.1), 0.25, 0.14));
    return toss.add(0.22, hiss(7000, 0.08) + bass("C3"_hz, 0.12));
}

Sound beep(double hertz) {
    return pulse(hertz, 0.125, 0.1) + bass(hertz / 4.0, 0.11) * 0.7;
}

Sound networkUp() {
    const Sound dial = play(
        beep, {{0.0, "D5"_hz}, {0.07, "G5"_hz}, {0.14, "C6"_hz}, {0.28, "D6"_hz}, {0.35, "G6"_hz}});
    return dial + after(0.36, pulse("G6"_hz, 0.25, 0.35));
}

Sound networkDown() {
    const Sound dial = play(
        beep, {{0.0, "G6"_hz}, {0.07, "D6"_hz}, {0.14, "C6"_hz}, {0.28, "G5"_hz}, {0.35, "D5"_hz}});
    return dial + after(0.38, pulse("D5"_hz, 0.125, 0.25) * 0.6) +
           after(0.42, bass(glide("D4"_hz, "D2"_hz, 0.2), 0.28));
}

Sound batteryLow() {
    Sound alarm;
    for (int bar = 0; bar < 3; ++bar) {
        const double at = 0.3 * bar;
        alarm.add(at, pulse("A5"_hz, 0.25, 0.14)).add(at + 0.12, pulse("F5"_hz, 0.25, 0.16));
        alarm.add(at, bass("D4"_hz, 0.26), 0.8);
    }
    return alarm;
}

Sound usbConnect() {
    Sound plug = clank(9000, 0.05) * 0.6;
    plug.add(0.04, pulse("F5"_hz, 0.5, 0.1) + bass("F4"_hz, 0.1));
    return plug.add(0.13, pulse("C6"_hz, 0.5, 0.22) + bass("C5"_hz, 0.22));
}

Sound keyClick() {
    return pulse(glide(1900, 1200, 0.02), 0.125, 0.042) + hiss(30000, 0.018) * 0.5;
}

Sound keySpace() {
    return bass(glide(520, 190, 0.05), 0.075) + hiss(12000, 0.03) * 0.35;
}

Sound keyReturn() {
    return pulseTone(0.11, steps({"E5"_hz, "B4"_hz}, 0.035), 0.25) * held(0.03, 0.08) +
           hiss(20000, 0.03) * 0.5 + bass("E3"_hz, 0.09) * 0.6;
}

constexpr Recipe kRecipes[] = {
    {"slap", slap},
    {"lid_open", lidOpen},
    {"lid_close", lidClose},
    {"lid_angle", lidAngle},
    {"charger_connect", chargerConnect},
    {"charger_disconnect", chargerDisconnect},
    {"brightness_up", brightnessUp},
    {"brightness_down", brightnessDown},
    {"volume_up", volumeUp},
    {"volume_down", volumeDown},
    {"screenshot", screenshot},
    {"app_launch", appLaunch},
    {"trash_empty", trashEmpty},
    {"trash_add", trashAdd},
    {"network_up", networkUp},
    {"network_down", networkDown},
    {"battery_low", batteryLow},
    {"usb_connect", usbConnect},
    {"key_click", keyClick},
    {"key_space", keySpace},
    {"key_return", keyReturn},
};

}  // namespace

std::span<const Recipe> eightBit() {
    return kRecipes;
}

}  // namespace chimewerk::themes
