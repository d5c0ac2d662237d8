// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/oscillators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The soft theme: sines that swell rather than strike, in the gentle intervals of D major, in a
// soft room.
namespace chimewerk::themes {
namespace {

using namespace synth;

constexpr double kAttack = 0.012;

// Two sines slightly out of tune, which makes them lively, with a quiet octave above.
Sound tone(const Curve& hertz, double seconds) {
    const Sound pair = sineTone(seconds, hertz) + sineTone(seconds, hertz * 1.0017);
    const Sound octave = sineTone(seconds, hertz * 2.0);
    return (pair * 0.5 + octave * 0.12 * breathed(0.02, seconds, 0.9 * seconds)) *
           breathed(kAttack, seconds, 0.8 * seconds);
}

Sound longTone(double hertz) {
    return tone(hertz, 0.62);
}
Sound shortTone(double hertz) {
    return tone(hertz, 0.3);
}

// A drop of water: a sine that leaps up as it dies.
Sound drop(double hertz) {
    return sineTone(0.14, glide(hertz, 1.7 * hertz, 0.1)) * struck(0.006, 0.16);
}

Sound breath(const Curve& hertz, double seconds, std::uint64_t seed) {
    return bandPass(noise(seconds, seed), hertz, 1.2) * breathed(0.008, seconds, 0.6 * seconds);
}

Sound softly(const Sound& sound) {
    return inRoom(sound, 0.35, 0.8, 0.22);
}

Sound slap() {
    return softly(sineTone(0.4, glide(210, 130, 0.08)) * struck(0.005, 0.35) +
                  sineTone(0.3, glide(440, "D4"_hz, 0.05)) * struck(0.006, 0.3) * 0.6 +
                  sineTone(0.3, glide(660, "A4"_hz, 0.05)) * struck(0.006, 0.25) * 0.45);
}

Sound lidOpen() {
    return softly(
        play(longTone,
             {{0.0, "D4"_hz, 0.8}, {0.11, "F#4"_hz, 0.8}, {0.22, "A4"_hz, 0.9}, {0.33, "D5"_hz}}));
}

Sound lidClose() {
    return softly(play(longTone, {{0.0, "D5"_hz}, {0.12, "A4"_hz, 0.9}, {0.24, "D4"_hz}}));
}

Sound lidAngle() {
    return softly(tone(wobble("A4"_hz, 5.5, 0.35), 0.7) +
                  tone(wobble("E5"_hz, 5.5, 0.35), 0.7) * 0.4);
}

Sound chargerConnect() {
    return softly(tone(glide("D4"_hz, "A4"_hz, 0.25), 0.5) +
                  play(longTone, {{0.24, "A4"_hz, 0.7}, {0.3, "F#5"_hz, 0.8}}));
}

Sound chargerDisconnect() {
    return softly(play(shortTone, {{0.0, "F#5"_hz, 0.8}}) +
                  after(0.08, tone(glide("A4"_hz, "D4"_hz, 0.3), 0.65)));
}

Sound brightnessUp() {
    return softly(play(shortTone, {{0.0, "A5"_hz, 0.8}, {0.08, "D6"_hz}}));
}

Sound brightnessDown() {
    return softly(play(shortTone, {{0.0, "D6"_hz, 0.8}, {0.08, "A5"_hz}}));
}

Sound slide(double from, double to) {
    return inRoom(tone(glide(from, to, 0.2), 0.26), 0.2, 0.4, 0.08);
}

Sound volumeUp() {
    return slide("D5"_hz, "A5"_hz);
}

Sound volumeDown() {
    return slide("A5"_hz, "D5"_hz);
}

Sound screenshot() {
    return softly(breath(glide(2200, 900, 0.12), 0.16, 21) * 1.4 +
                  after(0.07, drop("D5"_hz) * 0.5));
}

Sound appLaunch() {
    return softly(play(shortTone, {{0.0, "A4"_hz, 0.6},
                                   {0.06, "B4"_hz, 0.7},
                                   {0.12, "D5"_hz, 0.8},
                                   {0.18, "E5"_hz},
                                   {0.24, "A5"_hz}}));
}

Sound trashEmpty() {
    return softly(
        breath(glide(1600, 300, 0.6), 0.75, 22) +
        play(shortTone, {{0.0, "B4"_hz, 0.3}, {0.12, "F#4"_hz, 0.35}, {0.26, "D4"_hz, 0.4}}));
}

Sound trashAdd() {
    return softly(play(drop, {{0.0, "F#5"_hz, 0.6}, {0.1, "D4"_hz}}));
}

Sound networkUp() {
    return softly(play(shortTone, {{0.0, "D5"_hz, 0.7}, {0.13, "D5"_hz, 0.7}}) +
                  after(0.26, longTone("B5"_hz)));
}

Sound networkDown() {
    return softly(play(shortTone, {{0.0, "B5"_hz, 0.7}, {0.13, "B5"_hz, 0.7}}) +
                  after(0.26, longTone("D5"_hz)));
}

Sound batteryLow() {
    const auto call = [](double hertz) {
        return tone(hertz, 0.15) + tone(1.5 * hertz, 0.15) * 0.4;
    };
    const Sound calls = play(
        call,
        {{0.0, "F#5"_hz}, {0.16, "D5"_hz}, {0.42, "F#5"_hz}, {0.58, "D5"_hz}, {0.84, "B4"_hz}});
    return inRoom(calls, 0.15, 0.5, 0.15);
}

Sound usbConnect() {
    return softly(play(drop, {{0.0, "A4"_hz}}) + after(0.07, shortTone("E5"_hz) * 0.8));
}

Sound keyClick() {
    return sineTone(0.06, glide(760, 520, 0.02)) * struck(0.003, 0.055);
}

Sound keySpace() {
    return sineTone(0.1, glide(420, 260, 0.04)) * struck(0.004, 0.1);
}

Sound keyReturn() {
    return sineTone(0.125, "D4"_hz) * struck(0.004, 0.12) +
           after(0.03, sineTone(0.095, "A4"_hz) * struck(0.004, 0.1));
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

std::span<const Recipe> soft() {
    return kRecipes;
}

}  // namespace chimewerk::themes
