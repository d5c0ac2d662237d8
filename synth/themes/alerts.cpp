// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/oscillators.h"
#include "synth/blocks/resonators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The alerts, found by name; each sounds like its name.
namespace chimewerk::themes {
namespace {

using namespace synth;

// A plucked bass through a filter that goes "wow".
Sound funk() {
    const auto slapBass = [](double hertz) {
        const Sound raw = sawTone(0.32, hertz) + pulseTone(0.32, hertz, 0.3);
        return lowPass(raw, glide(2600, 260, 0.16), 3.0) * struck(0.002, 0.45);
    };
    return play(slapBass, {{0.0, "E2"_hz}, {0.13, "G2"_hz, 0.8}, {0.22, "E3"_hz, 0.9}})
        .damped(0.55, 0.15);
}

// A low brass instrument, tongued and released.
Sound basso() {
    const Curve hertz = glide("F2"_hz, "C2"_hz, 0.4);
    const Sound reeds = saturated(sawTone(0.6, hertz) + sawTone(0.6, hertz * 1.006), 2.0);
    const Sound brass =
        lowPass(reeds, glide(3200, 1000, 0.5), 1.2) + bandPass(reeds, 520, 2.0) * 1.5;
    return inRoom(brass * breathed(0.012, 0.6, 0.35), 0.2, 0.5, 0.1);
}

// A bubble that bursts.
Sound pop() {
    return sineTone(0.18, glide(310, 1150, 0.07)) * struck(0.003, 0.17) +
           sineTone(0.18, 155) * struck(0.002, 0.12) * 0.5;
}

// A rolling throat.
Sound purr() {
    const Sound roll = sineTone(0.62, wobble(170, 4, 0.8)) +
                       sineTone(0.62, wobble(340, 4, 0.8)) * 0.6 +
                       sineTone(0.62, wobble(680, 4, 0.8)) * 0.35;
    const Sound air = bandPass(noise(0.62, 81), 900, 1.2) * 0.4;
    return (roll + air) * tremolo(24, 0.85) * breathed(0.012, 0.62, 0.3);
}

// A wine glass touched with a spoon.
Sound glass() {
    const std::vector<Partial> rim = {{1.0, 1.0, 1.1},
                                      {1.004, 0.5, 0.9},
                                      {2.32, 0.45, 0.7},
                                      {4.25, 0.25, 0.4},
                                      {6.63, 0.12, 0.2}};
    return inRoom(struckPartials(1.0, 1244, rim, 0.0008), 0.15, 0.6, 0.1).damped(1.0, 0.5);
}

// Breath across the neck of a bottle.
Sound blowAcross() {
    const Sound air = noise(0.7, 82);
    const Sound neck =
        bandPass(air, wobble(392, 5, 0.2), 28.0) * 4.0 + bandPass(air, 1180, 14.0) * 0.8;
    return (neck + bandPass(air, 2400, 0.8) * 0.25) * breathed(0.012, 0.7, 0.4);
}

// A tiny tap on metal.
Sound tink() {
    const Body triangle = {
        {2093, 0.22, 1.0}, {3520, 0.16, 0.6}, {5870, 0.1, 0.4}, {8200, 0.06, 0.25}};
    return driven(triangle, blow(0.25), 0.22).damped(0.22, 0.08);
}

// A bold figure on wooden bars.
Sound sosumi() {
    const auto bar = [](double hertz) {
        return struckPartials(
            0.4, hertz,
            {{1.0, 1.0, 0.5}, {3.01, 0.45, 0.18}, {6.1, 0.18, 0.08}, {10.2, 0.06, 0.03}}, 0.0008);
    };
    return inRoom(play(bar, {{0.0, "G4"_hz}, {0.12, "D5"_hz, 0.9}, {0.12, "G5"_hz, 0.8}}), 0.2, 0.5,
                  0.1)
        .damped(0.6, 0.2);
}

constexpr Recipe kRecipes[] = {
    {"Funk", funk},   {"Basso", basso},     {"Pop", pop},   {"Purr", purr},
    {"Glass", glass}, {"Blow", blowAcross}, {"Tink", tink}, {"Sosumi", sosumi},
};

}  // namespace

std::span<const Recipe> alerts() {
    return kRecipes;
}

}  // namespace chimewerk::themes
