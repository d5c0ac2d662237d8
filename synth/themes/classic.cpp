// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/resonators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The classic theme: warm bells. Their lowest partials are harmonic, the upper ones are not; the
// high ones die first.
namespace chimewerk::themes {
namespace {

using namespace synth;

Sound mallet(double hertz) {
    return bandPass(noise(0.02, 41), hertz, 1.0) * struck(0.0005, 0.018);
}

Sound bell(double hertz) {
    const std::vector<Partial> partials = {
        {0.5, 0.18, 1.1},   {1.0, 1.0, 1.25},  {1.0023, 0.35, 1.0}, {1.5, 0.1, 0.7},
        {2.0, 0.42, 0.85},  {2.52, 0.14, 0.5}, {3.01, 0.2, 0.42},   {4.12, 0.12, 0.26},
        {5.43, 0.08, 0.16}, {6.79, 0.05, 0.09}};
    return struckPartials(0.8, hertz, partials, 0.0012) + mallet(3.0 * hertz) * 0.25;
}

// A smaller bell, with little below its strike tone.
Sound chime(double hertz) {
    const std::vector<Partial> partials = {
        {1.0, 1.0, 0.7}, {2.76, 0.3, 0.4}, {5.4, 0.14, 0.18}, {8.93, 0.05, 0.07}};
    return struckPartials(0.5, hertz, partials, 0.0008) + mallet(4.0 * hertz) * 0.2;
}

// A wooden bar over a tube: the warmest of the three.
Sound bar(double hertz) {
    const std::vector<Partial> partials = {
        {1.0, 1.0, 0.42}, {2.0, 0.08, 0.3}, {3.93, 0.3, 0.12}, {9.6, 0.1, 0.035}};
    return struckPartials(0.36, hertz, partials, 0.001) + mallet(2.2 * hertz) * 0.4;
}

Sound ending(const Sound& sound, double seconds) {
    return inRoom(sound, 0.18, 0.6, 0.1).damped(seconds, 0.3 * seconds);
}

Sound slap() {
    const Sound wood = bar("F3"_hz) + bar("C4"_hz) * 0.6 + mallet(600) * 1.2;
    return ending(wood + bell("F4"_hz) * 0.35 + bell("C5"_hz) * 0.2, 0.6);
}

Sound lidOpen() {
    return ending(
        play(bell, {{0.0, "F4"_hz, 0.8}, {0.1, "A4"_hz, 0.8}, {0.2, "C5"_hz, 0.9}, {0.3, "F5"_hz}}),
        1.1);
}

Sound lidClose() {
    return ending(play(bell, {{0.0, "F5"_hz, 0.8}, {0.11, "C5"_hz, 0.8}, {0.22, "F4"_hz}}), 0.95);
}

Sound lidAngle() {
    return ending(play(chime, {{0.0, "C6"_hz}, {0.14, "C6"_hz, 0.5}, {0.28, "C6"_hz, 0.25}}), 0.7);
}

Sound chargerConnect() {
    return ending(
        play(bell, {{0.0, "C5"_hz, 0.7}, {0.09, "G5"_hz}}) + after(0.18, chime("E6"_hz) * 0.6),
        0.9);
}

Sound chargerDisconnect() {
    return ending(chime("E6"_hz) * 0.5 + play(bell, {{0.09, "G5"_hz, 0.7}, {0.18, "C5"_hz}}), 0.85);
}

Sound brightnessUp() {
    return ending(play(chime, {{0.0, "G5"_hz, 0.8}, {0.07, "D6"_hz}}), 0.4);
}

Sound brightnessDown() {
    return ending(play(chime, {{0.0, "D6"_hz, 0.8}, {0.07, "G5"_hz}}), 0.4);
}

Sound volumeUp() {
    return ending(play(bar, {{0.0, "C5"_hz, 0.8}, {0.07, "F5"_hz}}), 0.34);
}

Sound volumeDown() {
    return ending(play(bar, {{0.0, "F5"_hz, 0.8}, {0.07, "C5"_hz}}), 0.34);
}

Sound screenshot() {
    const Body camera = {
        {640, 0.03, 0.6}, {1850, 0.03, 0.8}, {3300, 0.025, 0.7}, {5200, 0.02, 0.4}};
    Sound shutter = driven(camera, blow(0.4), 0.08);
    shutter.add(0.085, driven(resized(camera, 0.8), blow(0.6), 0.08), 1.3);
    return ending(shutter + after(0.09, chime("A5"_hz) * 0.12), 0.36);
}

Sound appLaunch() {
    return ending(play(bar, {{0.0, "C5"_hz, 0.7}, {0.06, "E5"_hz, 0.7}, {0.12, "G5"_hz, 0.8}}) +
                      after(0.18, bell("C6"_hz) * 0.7),
                  0.75);
}

Sound trashEmpty() {
    const Sound sweep =
        bandPass(noise(0.5, 42), glide(3800, 420, 0.45), 1.4) * breathed(0.01, 0.5, 0.3);
    return ending(sweep * 0.9 + play(bar, {{0.0, "G5"_hz, 0.4},
                                           {0.09, "D5"_hz, 0.5},
                                           {0.18, "Bb4"_hz, 0.5},
                                           {0.3, "G4"_hz, 0.6},
                                           {0.44, "C4"_hz, 1.0}}),
                  0.85);
}

Sound trashAdd() {
    const Sound paper = bandPass(crackle(0.12, 2500, 43), 2600, 0.8) * breathed(0.002, 0.12, 0.06);
    return ending(paper * 3.0 + after(0.1, bar("A3"_hz) + bar("E4"_hz) * 0.5), 0.42);
}

Sound networkUp() {
    return ending(play(chime, {{0.0, "F5"_hz, 0.8}, {0.1, "Bb5"_hz, 0.8}, {0.2, "F6"_hz}}) +
                      bell("F4"_hz) * 0.3,
                  0.75);
}

Sound networkDown() {
    return ending(play(chime, {{0.0, "F6"_hz, 0.8}, {0.1, "Bb5"_hz, 0.8}, {0.2, "F5"_hz}}) +
                      after(0.28, bell("F4"_hz) * 0.7),
                  0.8);
}

Sound batteryLow() {
    return ending(play(bell, {{0.0, "E5"_hz},
                              {0.13, "C5"_hz},
                              {0.36, "E5"_hz},
                              {0.49, "C5"_hz},
                              {0.72, "E5"_hz},
                              {0.85, "C5"_hz}}),
                  1.19);
}

Sound usbConnect() {
    const Sound plugged = bar("A5"_hz) * 0.8 + chime("E6"_hz) * 0.3;
    return ending(mallet(1800) * 0.8 + bar("A4"_hz) + after(0.1, plugged), 0.45);
}

Sound keyClick() {
    return (bar("E6"_hz) * 0.7 + mallet(3200)).damped(0.06, 0.04);
}

Sound keySpace() {
    return (bar("A4"_hz) + mallet(1200)).damped(0.1, 0.07);
}

Sound keyReturn() {
    return (bar("C5"_hz) + mallet(1600) + after(0.035, bar("G5"_hz) * 0.8)).damped(0.13, 0.07);
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

std::span<const Recipe> classic() {
    return kRecipes;
}

}  // namespace chimewerk::themes
