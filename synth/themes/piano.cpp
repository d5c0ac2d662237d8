// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>

#include "synth/blocks/arithmetic.h"
#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/resonators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The piano theme: stiff strings in pairs, a felt hammer, and with the pedal down all
// other strings.
namespace chimewerk::themes {
namespace {

using namespace synth;

// Returns the frequency ratio of a partial. In a stiff string, the partials lie ever further above
// the harmonics; treble strings are the stiffest.
double stretch(int partial, double hertz) {
    const double stiffness = 3.0e-4 * std::sqrt(hertz / 262.0) * hertz / 262.0;
    return partial * std::sqrt((1.0 + stiffness * partial * partial) / (1.0 + stiffness));
}

// The hammer strikes at an eighth of the string, where every eighth partial has a node, and its
// felt absorbs the high ones. At first the two strings of a note swing together and lose their
// energy quickly to the bridge; the rest swings in opposition and lasts.
std::vector<Partial> stringPartials(double hertz, double force) {
    std::vector<Partial> partials;
    const double felt = 1400.0 + 2600.0 * force;
    for (int n = 1; n <= 24 && n * hertz < 14000.0; ++n) {
        const double frequency = n * hertz;
        const double level =
            std::abs(sine(n / 16.0)) / (n * (1.0 + frequency * frequency / (felt * felt)));
        const double prompt = 1.6 / (1.0 + frequency / 900.0) + 0.12;
        partials.push_back({stretch(n, hertz) * 0.9996, 0.85 * level, prompt});
        partials.push_back({stretch(n, hertz) * 1.0005, 0.25 * level, 3.5 * prompt});
    }
    return partials;
}

// The thump of key and action with each note, and the felt itself.
Sound hammer(double hertz, double force) {
    const Body action = {{95, 0.08, 1.0}, {185, 0.06, 0.8}, {310, 0.04, 0.5}, {520, 0.03, 0.3}};
    const Sound felt =
        bandPass(noise(0.03, 61), std::min(5000.0, 4.0 * hertz), 0.8) * struck(0.0008, 0.025);
    return driven(action, blow(1.8), 0.1) * 0.1 + felt * (0.3 * force);
}

Sound string(double hertz, double force, double seconds) {
    const Sound tone =
        struckPartials(seconds, hertz, stringPartials(hertz, force), 0.0015 + 0.3 / hertz);
    return (tone + hammer(hertz, force) * 0.5) * (0.5 + 0.5 * force);
}

Sound note(double hertz) {
    return string(hertz, 0.7, 0.9);
}
Sound softNote(double hertz) {
    return string(hertz, 0.35, 0.9);
}
Sound loudNote(double hertz) {
    return string(hertz, 1.0, 0.9);
}

// Notes whose key is released: when the next one comes, or at once.
Sound legato(double hertz) {
    return string(hertz, 0.7, 0.4).damped(0.26, 0.16);
}
Sound softLegato(double hertz) {
    return string(hertz, 0.35, 0.4).damped(0.22, 0.16);
}
Sound staccato(double hertz) {
    return string(hertz, 0.8, 0.4).damped(0.16, 0.1);
}

// With the pedal down, the free strings resonate a moment later.
Sound withPedal(const Sound& sound, double seconds) {
    Body strings;
    for (int key = -17; key <= 24; ++key) {
        strings.push_back({262.0 * semitones(key), 1.6, 2.0e-5});
    }
    return inRoom(sound + driven(strings, sound, 0.2) * 0.5, 0.12, 0.5, 0.05)
        .damped(seconds, 0.4 * seconds);
}

Sound withoutPedal(const Sound& sound, double seconds) {
    return inRoom(sound, 0.1, 0.4, 0.08).damped(seconds, 0.35 * seconds);
}

Sound slap() {
    return withoutPedal(
        play(loudNote,
             {{0.0, "C2"_hz, 0.8}, {0.0, "G2"_hz, 0.6}, {0.0, "C3"_hz, 0.7}, {0.0, "G4"_hz, 0.4}}) +
            hammer(600, 1.0),
        0.5);
}

Sound lidOpen() {
    return withPedal(
        play(legato, {{0.0, "C4"_hz, 0.8}, {0.09, "G4"_hz, 0.8}, {0.18, "D5"_hz, 0.9}}) +
            play(note, {{0.27, "E5"_hz}, {0.36, "G5"_hz, 1.2}}),
        1.19);
}

Sound lidClose() {
    return withPedal(play(note, {{0.0, "G5"_hz},
                                 {0.1, "E5"_hz},
                                 {0.2, "C5"_hz},
                                 {0.3, "C4"_hz, 1.2},
                                 {0.3, "C3"_hz, 0.8}}),
                     1.1);
}

Sound lidAngle() {
    return withoutPedal(
        play(softNote,
             {{0.0, "E5"_hz}, {0.08, "F5"_hz}, {0.16, "E5"_hz}, {0.24, "F5"_hz}, {0.32, "E5"_hz}}),
        0.7);
}

Sound chargerConnect() {
    return withPedal(play(legato, {{0.0, "G3"_hz}, {0.1, "D4"_hz}}) +
                         play(note, {{0.2, "B4"_hz}, {0.2, "G5"_hz, 1.2}}),
                     0.95);
}

Sound chargerDisconnect() {
    return withPedal(play(legato, {{0.0, "G5"_hz}, {0.0, "B4"_hz}, {0.12, "D4"_hz}}) +
                         play(note, {{0.24, "G3"_hz, 1.2}}),
                     0.9);
}

Sound brightnessUp() {
    return withoutPedal(play(softLegato, {{0.0, "E5"_hz}}) + play(softNote, {{0.07, "E6"_hz, 1.2}}),
                        0.4);
}

Sound brightnessDown() {
    return withoutPedal(play(softLegato, {{0.0, "E6"_hz}}) + play(softNote, {{0.07, "E5"_hz, 1.2}}),
                        0.4);
}

Sound volumeUp() {
    return withoutPedal(play(staccato, {{0.0, "D4"_hz, 0.8}, {0.07, "B4"_hz}}), 0.3);
}

Sound volumeDown() {
    return withoutPedal(play(staccato, {{0.0, "B4"_hz, 0.8}, {0.07, "D4"_hz}}), 0.3);
}

Sound screenshot() {
    return withoutPedal(
        play(staccato, {{0.0, "C6"_hz, 0.8}, {0.0, "Db6"_hz, 0.6}, {0.09, "C7"_hz}}) +
            hammer(900, 1.0),
        0.35);
}

Sound appLaunch() {
    return withPedal(
        play(softLegato, {{0.0, "C5"_hz}, {0.045, "E5"_hz}, {0.09, "G5"_hz}, {0.135, "B5"_hz}}) +
            play(softNote, {{0.18, "D6"_hz, 1.3}}),
        0.8);
}

Sound trashEmpty() {
    return withPedal(play(note, {{0.0, "A5"_hz, 0.7},
                                 {0.05, "G5"_hz, 0.7},
                                 {0.1, "E5"_hz, 0.7},
                                 {0.15, "D5"_hz, 0.8},
                                 {0.2, "C5"_hz, 0.8},
                                 {0.25, "A4"_hz, 0.8},
                                 {0.3, "G4"_hz, 0.9},
                                 {0.35, "E4"_hz, 0.9},
                                 {0.42, "A2"_hz, 1.2}}),
                     1.0);
}

Sound trashAdd() {
    return withoutPedal(play(staccato, {{0.0, "D5"_hz, 0.8}, {0.09, "G3"_hz, 1.2}}), 0.42);
}

Sound networkUp() {
    return withPedal(play(legato, {{0.0, "D5"_hz, 0.8}, {0.1, "D5"_hz, 0.8}, {0.2, "A5"_hz}}) +
                         play(note, {{0.3, "D6"_hz, 1.2}}),
                     0.9);
}

Sound networkDown() {
    return withPedal(play(legato, {{0.0, "D6"_hz, 0.8}, {0.1, "D6"_hz, 0.8}, {0.2, "G5"_hz}}) +
                         play(note, {{0.32, "D4"_hz}}),
                     0.85);
}

Sound batteryLow() {
    constexpr double kTritone = 6.0;
    const auto chord = [](double hertz) {
        return (loudNote(hertz) + loudNote(hertz * semitones(kTritone))).damped(0.3, 0.1);
    };
    return withoutPedal(
        play(chord,
             {{0.0, "B4"_hz}, {0.16, "G4"_hz}, {0.42, "B4"_hz}, {0.58, "G4"_hz}, {0.84, "B4"_hz}}),
        1.15);
}

Sound usbConnect() {
    return withoutPedal(play(legato, {{0.0, "F4"_hz, 0.9}, {0.0, "C5"_hz, 0.9}}) +
                            play(note, {{0.11, "F5"_hz, 1.1}}),
                        0.55);
}

Sound keyClick() {
    return string("C6"_hz, 0.6, 0.12).damped(0.075, 0.05);
}

Sound keySpace() {
    return string("C4"_hz, 0.8, 0.2).damped(0.115, 0.07);
}

Sound keyReturn() {
    return (string("G4"_hz, 0.8, 0.2) + after(0.02, string("D5"_hz, 0.8, 0.2))).damped(0.135, 0.08);
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

std::span<const Recipe> piano() {
    return kRecipes;
}

}  // namespace chimewerk::themes
