// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/resonators.h"
#include "synth/themes/recipe.h"

// An old keyboard: under each key a spring buckles and strikes a steel plate, and snaps back
// on release.
namespace chimewerk::themes {
namespace {

using namespace synth;

const Body kSpring = {
    {2350, 0.05, 0.5}, {3120, 0.045, 0.8}, {4480, 0.035, 0.7}, {6210, 0.025, 0.5}};
const Body kPlate = {
    {165, 0.04, 1.0}, {320, 0.035, 0.8}, {585, 0.025, 0.6}, {1150, 0.018, 0.5}, {1980, 0.012, 0.4}};

Sound spring(double pitch) {
    return driven(resized(kSpring, pitch), blow(0.2), 0.05);
}
Sound bottom(double pitch, double milliseconds) {
    return driven(resized(kPlate, pitch), blow(milliseconds), 0.06);
}
Sound cap(double pitch, std::uint64_t seed) {
    return bandPass(noise(0.012, seed), 2800 * pitch, 0.9) * struck(0.0003, 0.012);
}

Sound keyClick() {
    Sound key = spring(1.0) * 1.0 + cap(1.0, 71) * 1.4;
    key.add(0.005, bottom(1.25, 0.7), 1.0);
    return key.add(0.056, spring(1.18) * 0.5 + cap(1.3, 72) * 0.6 + bottom(1.9, 0.5) * 0.2)
        .damped(0.105, 0.03);
}

Sound keySpace() {
    Sound key = spring(0.72) * 0.6 + cap(0.6, 73) * 0.9;
    key.add(0.006, bottom(0.72, 1.4), 1.4);
    // The wire that keeps a long key level rattles in its clips.
    key.add(0.017, cap(0.9, 74) + bottom(2.3, 0.4), 0.3);
    key.add(0.026, cap(1.1, 75) + bottom(2.7, 0.4), 0.22);
    key.add(0.038, cap(0.8, 76) + bottom(2.0, 0.4), 0.14);
    return key.add(0.078, spring(0.85) * 0.4 + bottom(1.1, 0.8) * 0.35).damped(0.138, 0.04);
}

Sound keyReturn() {
    Sound key = spring(0.85) * 0.9 + cap(0.8, 77) * 1.2;
    key.add(0.006, bottom(0.9, 1.0) * 1.2 + bottom(0.6, 1.4) * 0.9);
    key.add(0.02, cap(0.7, 78), 0.3);
    return key.add(0.068, spring(1.0) * 0.5 + bottom(1.4, 0.6) * 0.4).damped(0.13, 0.04);
}

constexpr Recipe kRecipes[] = {
    {"key_click", keyClick},
    {"key_space", keySpace},
    {"key_return", keyReturn},
};

}  // namespace

std::span<const Recipe> defaultKeys() {
    return kRecipes;
}

}  // namespace chimewerk::themes
