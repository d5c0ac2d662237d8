// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/oscillators.h"
#include "synth/blocks/resonators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The sci-fi theme: sweeps, frequency and ring modulation, engines that power up and down.
namespace chimewerk::themes {
namespace {

using namespace synth;

Sound ringModulated(const Sound& sound, const Curve& hertz, double depth) {
    return sound * (1.0 - depth) + sound * sineTone(sound.seconds(), hertz) * depth;
}

// An engine: a saw tooth behind a filter that opens and closes with its speed.
Sound engine(double from, double to, double seconds) {
    const Curve speed = glide(from, to, 0.8 * seconds);
    const Sound raw = sawTone(seconds, speed) + sawTone(seconds, speed * 1.506) * 0.6;
    return lowPass(raw, speed * 5.0, 2.5);
}

Sound zap(double from, double to, double seconds) {
    return fmTone(seconds, glide(from, to, 0.7 * seconds), 1.414, glide(4.0, 0.3, seconds)) *
           struck(0.002, 1.6 * seconds);
}

// The glassy tone of a distant machine.
Sound crystal(double hertz) {
    return fmTone(0.5, hertz, 3.51, glide(2.2, 0.05, 0.35)) * struck(0.003, 0.55);
}

Sound chirp(double hertz) {
    return fmTone(0.07, hertz, 2.0, ramp(3.0, 0.5, 0.05)) * breathed(0.003, 0.07, 0.03);
}

Sound inHall(const Sound& sound) {
    return inRoom(sound, 0.4, 0.7, 0.15);
}

Sound slap() {
    const Sound impact =
        fmTone(0.4, glide(520, 55, 0.12), 0.71, glide(7.0, 0.2, 0.25)) * struck(0.001, 0.5);
    return inHall(impact + bandPass(noise(0.2, 31), glide(5000, 500, 0.15), 1.5) *
                               struck(0.001, 0.16) * 0.8);
}

Sound lidOpen() {
    const Sound rising = engine(55, 440, 0.8) * tremolo(18, 0.35) * breathed(0.002, 0.8, 0.25);
    return inHall(rising * 0.6 + after(0.5, (crystal("A5"_hz) + crystal("E6"_hz) * 0.6) * 0.6));
}

Sound lidClose() {
    const Sound falling = engine(440, 45, 0.8) * breathed(0.01, 0.8, 0.35);
    return inHall(ringModulated(falling, glide(90, 20, 0.7), 0.4)).damped(0.95, 0.2);
}

Sound lidAngle() {
    const Sound ping =
        ringModulated(sineTone(0.22, glide(1320, 1250, 0.2)), 660, 0.5) * struck(0.002, 0.3);
    return inHall(echoed(ping, 0.19, 0.45, 3));
}

Sound chargerConnect() {
    Sound charge;
    const double stages[] = {110, 165, 247, 370};
    double at = 0.0;
    for (const double stage : stages) {
        charge.add(
            at, fmTone(0.2, glide(stage, 2.0 * stage, 0.12), 1.0, 3.0) * breathed(0.004, 0.2, 0.1));
        at += 0.11;
    }
    return inHall(charge.add(0.44, crystal("F#6"_hz) + crystal("B5"_hz), 0.8));
}

Sound chargerDisconnect() {
    const Curve speed = wobble(glide(740, 62, 0.6), 23, 0.7);
    const Sound fall = fmTone(0.7, speed, 1.0, glide(4.0, 0.8, 0.6)) * breathed(0.003, 0.7, 0.35);
    return inHall(crystal("F#6"_hz) * 0.5 + fall);
}

// A beam that is turned up or down.
Sound beam(double from, double to) {
    const Sound light = ringModulated(sineTone(0.26, glide(from, to, 0.17)),
                                      glide(0.5 * from, 0.5 * to, 0.17), 0.5);
    return inHall(light * breathed(0.004, 0.26, 0.13));
}

Sound brightnessUp() {
    return beam(600, 1900);
}

Sound brightnessDown() {
    return beam(1900, 600);
}

// `fullness` is the depth of the modulation, which makes the sound richer.
Sound warp(double from, double to, const Curve& fullness) {
    return fmTone(0.22, glide(from, to, 0.14), 2.0, fullness) * breathed(0.003, 0.22, 0.1);
}

Sound volumeUp() {
    return warp(220, 660, ramp(1.0, 4.0, 0.16));
}

Sound volumeDown() {
    return warp(660, 220, ramp(4.0, 1.0, 0.16));
}

Sound screenshot() {
    const Sound scan =
        bandPass(noise(0.32, 32), glide(700, 6500, 0.28), 6.0) * breathed(0.004, 0.32, 0.06);
    return inHall(scan * 2.0 + after(0.29, zap(2600, 1300, 0.09) * 0.6));
}

Sound appLaunch() {
    const Sound thrust =
        bandPass(noise(0.9, 33), glide(180, 5200, 0.8), 0.9) * breathed(0.004, 0.9, 0.35);
    const Sound ignition = sineTone(0.3, glide(120, 45, 0.25)) * struck(0.003, 0.5);
    const Sound leap = fmTone(0.55, glide(240, 2300, 0.42), 0.5, glide(6.0, 0.6, 0.45)) *
                       breathed(0.02, 0.55, 0.2);
    return inHall(thrust * 1.4 + ignition + after(0.4, leap * 0.7));
}

Sound trashEmpty() {
    const Sound dust = bandPass(noise(0.95, 34) + crackle(0.95, glide(4000, 200, 0.9), 35) * 6.0,
                                glide(5200, 350, 0.8), 1.6) *
                       breathed(0.004, 0.95, 0.6);
    return inHall(dust + zap(1400, 70, 0.6) * 0.5);
}

Sound trashAdd() {
    return inHall(ringModulated(sineTone(0.3, wobble(glide(1100, 160, 0.25), 26, 2.0)), 130, 0.6) *
                  breathed(0.003, 0.3, 0.15));
}

Sound networkUp() {
    return inHall(
        play(chirp,
             {{0.0, 620}, {0.06, 930}, {0.12, 740}, {0.18, 1240}, {0.24, 990}, {0.3, 1650}}) +
        after(0.38, crystal("G6"_hz) * 0.8));
}

Sound networkDown() {
    return inHall(
        play(chirp,
             {{0.0, 1650}, {0.06, 990}, {0.12, 1240}, {0.18, 740}, {0.24, 930}, {0.3, 460}}) +
        after(0.38, zap(420, 60, 0.4)));
}

Sound batteryLow() {
    Sound klaxon;
    for (int call = 0; call < 3; ++call) {
        const Sound raw =
            sawTone(0.3, glide(330, 660, 0.24)) + pulseTone(0.3, glide(331, 663, 0.24), 0.3) * 0.6;
        klaxon.add(0.33 * call,
                   lowPass(raw, ramp(1200, 2600, 0.25), 1.5) * breathed(0.006, 0.3, 0.06));
    }
    return inHall(klaxon).damped(1.15, 0.12);
}

Sound usbConnect() {
    const Sound servo = engine(160, 320, 0.16) * breathed(0.006, 0.16, 0.04);
    const Body hull = {
        {310, 0.25, 1.0}, {733, 0.2, 0.7}, {1270, 0.15, 0.6}, {2210, 0.1, 0.4}, {3470, 0.06, 0.3}};
    return inHall(servo * 0.4 + after(0.17, driven(hull, blow(0.5), 0.3)) +
                  after(0.24, chirp(1480) * 0.5));
}

Sound keyClick() {
    return zap(2400, 900, 0.05);
}

Sound keySpace() {
    return zap(620, 150, 0.095);
}

Sound keyReturn() {
    return (zap(900, 300, 0.07) + after(0.045, zap(500, 1400, 0.08) * 0.8)).damped(0.125, 0.03);
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

std::span<const Recipe> sciFi() {
    return kRecipes;
}

}  // namespace chimewerk::themes
