// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/resonators.h"
#include "synth/blocks/score.h"
#include "synth/themes/recipe.h"

// The traditional theme: objects of wood, brass and paper, each a body with modes and the force
// that moves it.
namespace chimewerk::themes {
namespace {

using namespace synth;

const Body kDoor = {{142, 0.11, 1.0},  {236, 0.1, 0.8},   {391, 0.08, 0.7}, {618, 0.06, 0.55},
                    {944, 0.045, 0.4}, {1480, 0.03, 0.3}, {2350, 0.02, 0.2}};
const Body kHinge = {
    {410, 0.03, 0.7}, {870, 0.03, 1.0}, {1390, 0.025, 0.9}, {2180, 0.02, 0.6}, {3350, 0.015, 0.4}};
const Body kWoodBlock = {
    {780, 0.09, 1.0}, {1720, 0.05, 0.5}, {2890, 0.03, 0.3}, {4400, 0.02, 0.15}};
const Body kLatch = {
    {1240, 0.06, 0.6}, {2130, 0.05, 0.8}, {3420, 0.05, 0.9}, {4870, 0.04, 0.6}, {6900, 0.025, 0.4}};
const Body kBrassBell = {
    {1046, 0.9, 1.0}, {1052, 0.7, 0.5}, {2480, 0.5, 0.8}, {4390, 0.3, 0.6}, {6700, 0.15, 0.35}};
const Body kBasket = {{96, 0.12, 1.0}, {205, 0.1, 0.6}, {337, 0.07, 0.4}, {770, 0.04, 0.2}};
const Body kTypebar = {
    {290, 0.03, 1.0}, {640, 0.025, 0.8}, {1650, 0.02, 0.6}, {2900, 0.02, 0.6}, {4600, 0.014, 0.4}};

Sound thud(double milliseconds, double pitch) {
    return driven(resized(kDoor, pitch), blow(milliseconds), 0.22);
}
Sound knuckle(double pitch) {
    return driven(resized(kDoor, pitch, 0.8), blow(1.1), 0.25);
}
Sound snap(double pitch) {
    return driven(resized(kLatch, pitch), blow(0.25), 0.09);
}
Sound block(double pitch) {
    return driven(resized(kWoodBlock, pitch), blow(0.5), 0.14);
}

// A dry hinge: wood sticks and slips at `hertz`, and the door rings above it, higher the faster
// it slips.
Sound creak(const Curve& hertz, double seconds, std::uint64_t seed) {
    const Sound slips =
        stickSlip(seconds, hertz, 0.05, seed) * breathed(0.0005, seconds, 0.3 * seconds);
    const Sound voice =
        driven(kHinge, slips, 0.05) + driven(resized(kDoor, 1.6, 0.5), slips, 0.05) * 0.5;
    return bandPass(voice, hertz * 6.5, 1.3) + voice * 0.15;
}

// Sheets that rub and fold: many small breaks in something thin.
Sound paper(double seconds, const Curve& breaksPerSecond, double brightness, std::uint64_t seed) {
    const Body sheet = {
        {1350, 0.006, 0.6}, {2600, 0.005, 1.0}, {4300, 0.004, 1.0}, {6800, 0.003, 0.6}};
    const Sound breaks =
        crackle(seconds, breaksPerSecond, seed) * breathed(0.004, seconds, 0.4 * seconds);
    return driven(resized(sheet, brightness), breaks, 0.02);
}

Sound scrape(const Curve& hertz, double seconds, std::uint64_t seed) {
    return bandPass(noise(seconds, seed), hertz, 1.6) * breathed(0.004, seconds, 0.3 * seconds);
}

Sound slap() {
    return knuckle(1.0) + driven(kBasket, blow(2.5), 0.25) * 0.15 + block(0.62) * 0.7;
}

Sound lidOpen() {
    Sound door = snap(0.6) * 0.5 + thud(1.0, 1.1) * 0.2;
    return door.add(0.08, creak(wobble(glide(48, 190, 0.75), 3.1, 2.5), 0.85, 51), 1.0);
}

Sound lidClose() {
    Sound door = creak(wobble(glide(170, 60, 0.42), 4.3, 2.0), 0.45, 52) * 0.7;
    return door.add(0.44, thud(2.2, 0.75) * 1.6 + driven(kBasket, blow(3.0), 0.25))
        .add(0.5, snap(0.55), 0.25);
}

Sound lidAngle() {
    Sound ratchet;
    for (int tooth = 0; tooth < 7; ++tooth) {
        ratchet.add(0.052 * tooth, block(1.15 + 0.03 * (tooth % 2)) + snap(0.7) * 0.3,
                    0.6 + 0.06 * tooth);
    }
    return ratchet.add(0.38, block(0.9), 1.3);
}

Sound chargerConnect() {
    Sound plug = thud(1.4, 0.8) + scrape(glide(900, 2600, 0.14), 0.16, 53) * 0.5;
    return plug.add(0.16, snap(0.8) + block(1.5) * 0.6).add(0.2, snap(1.15), 0.8);
}

Sound chargerDisconnect() {
    Sound plug = snap(1.15) * 0.8 + block(1.5) * 0.5;
    return plug.add(0.03, scrape(glide(2600, 700, 0.14), 0.16, 54), 0.5)
        .add(0.18, thud(1.6, 0.9) + knuckle(1.6) * 0.5 + block(0.6) * 0.3, 1.3);
}

Sound brightnessUp() {
    return block(0.75) * 0.9 + after(0.075, block(1.2) + snap(0.9) * 0.3);
}

Sound brightnessDown() {
    return block(1.2) + snap(0.9) * 0.3 + after(0.075, block(0.75) * 0.9);
}

// Three clicks of a wooden knob; the second and third each `ratio` above the one before.
Sound knob(double pitch, double ratio) {
    const auto click = [](double height) { return knuckle(3.2 * height) + snap(height) * 0.12; };
    return play(click, {{0.0, pitch}, {0.05, pitch * ratio}, {0.1, pitch * ratio * ratio}});
}

Sound volumeUp() {
    return knob(0.52, 1.5);
}

Sound volumeDown() {
    return knob(1.17, 1.0 / 1.5);
}

Sound screenshot() {
    Sound shutter = snap(0.75) + thud(0.8, 2.4) * 0.6;
    shutter.add(0.02, scrape(4200, 0.06, 55), 0.5);
    return shutter.add(0.085, snap(0.62) + thud(0.9, 1.9)).add(0.115, snap(1.1), 0.35);
}

Sound appLaunch() {
    const Sound ding = driven(kBrassBell, blow(0.15), 0.75) * breathed(0.001, 0.75, 0.4);
    return thud(0.8, 2.0) * 0.3 + after(0.02, ding);
}

Sound trashEmpty() {
    Sound rubbish = paper(0.85, glide(2600, 250, 0.8), 0.8, 56) * tremolo(6.5, 0.75) * 1.8;
    rubbish.add(0.18, driven(kBasket, blow(3.0), 0.25), 0.8).add(0.33, knuckle(1.4), 0.35);
    return rubbish.add(0.46, driven(resized(kBasket, 1.2), blow(2.0), 0.25), 0.9)
        .add(0.62, thud(2.5, 0.7), 0.8);
}

Sound trashAdd() {
    return paper(0.17, 2800, 1.15, 57) * 1.4 +
           after(0.2, driven(kBasket, blow(2.5), 0.25) + paper(0.1, 700, 0.9, 58));
}

// A telegraph sounder: an iron arm falls onto its anvil and is drawn back.
Sound sounder(double pitch) {
    return driven(resized(kTypebar, 1.3 * pitch, 2.0), blow(0.5), 0.16) + snap(0.8 * pitch) * 0.4;
}

Sound networkUp() {
    return play(sounder, {{0.0, 0.8}, {0.07, 0.8}, {0.14, 0.8}, {0.3, 1.3, 1.2}});
}

Sound networkDown() {
    return play(sounder, {{0.0, 1.3}, {0.16, 0.8}, {0.23, 0.8}, {0.3, 0.62, 1.4}});
}

Sound batteryLow() {
    // The hammer of an alarm clock between its two bells, in two bursts.
    Sound clock;
    for (int blows = 0; blows < 20; ++blows) {
        const double at = 0.043 * blows + (blows < 10 ? 0.0 : 0.14);
        const double pitch = blows % 2 == 0 ? 0.8 : 0.98;
        clock.add(at, driven(resized(kBrassBell, pitch, 0.25), blow(0.6), 0.22) + block(0.7) * 0.2);
    }
    return clock;
}

Sound usbConnect() {
    const Sound slide = scrape(glide(500, 1500, 0.1), 0.12, 59);
    return slide * 0.5 + after(0.12, thud(0.9, 1.7)) + after(0.13, snap(0.7) + snap(1.2) * 0.4);
}

Sound typebar(double pitch, double milliseconds) {
    return driven(resized(kTypebar, pitch), blow(milliseconds), 0.05) +
           paper(0.02, 3000, 1.2, 60) * 0.4;
}

Sound keyClick() {
    return typebar(1.1, 0.4) + snap(1.0) * 0.25;
}

Sound keySpace() {
    return (typebar(0.62, 1.2) + after(0.022, block(0.8) * 0.35) + after(0.045, snap(0.8) * 0.3))
        .damped(0.13, 0.04);
}

Sound keyReturn() {
    Sound carriage;
    for (int tooth = 0; tooth < 4; ++tooth) {
        carriage.add(0.016 * tooth, snap(0.85 + 0.05 * tooth), 0.35);
    }
    return carriage.add(0.065, typebar(0.5, 1.2) + thud(1.0, 1.3) * 0.5, 1.3).damped(0.14, 0.03);
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

std::span<const Recipe> traditional() {
    return kRecipes;
}

}  // namespace chimewerk::themes
