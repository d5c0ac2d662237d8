// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "demo/rows.h"

namespace chimewerk {

using namespace std::chrono_literals;

namespace {

constexpr const char* kNeedsMachine = "[ -p \"$CHIMEWERK_MACHINE\" ] || echo 'not in fake-machine'";
constexpr const char* kNeedsNetwork =
    "[ -p \"$CHIMEWERK_MACHINE\" ] && ip link show near >/dev/null 2>&1 || echo 'no fake "
    "network'";

#define POWER_DAEMONS "\"" CHIMEWERK_MACHINE_DIR "/power-daemons\""
constexpr const char* kStartPowerDaemons =
    "gdbus call --system --dest org.freedesktop.UPower --object-path / --method "
    "org.freedesktop.DBus.Peer.Ping "
    ">/dev/null 2>&1 || " POWER_DAEMONS " start";

/// Writes a tenth of a second of 32-bit float samples, loud at first and fading.
constexpr const char* kMakeKnock =
    "/usr/bin/python3 -c 'import math, struct, sys; sys.stdout.buffer.write(struct.pack(\"4800f\", "
    "*(0.95 * math.exp(-t / 200) * math.cos(t / 20) for t in range(4800))))' >\"$HOME/knock.raw\"";

}  // namespace

std::span<const DemoRow> demoRows() {
    static constexpr DemoRow kRows[] = {
        {.event = "slap",
         .what = "someone knocks on the computer",
         .signal = R"(cat "$HOME/knock.raw" >"$CHIMEWERK_MICROPHONE")",
         .deadline = 1s,
         .preparation = kMakeKnock},
        // The sound of waking comes half a second after the signal.
        {.event = "lid_close",
         .what = "the machine goes to sleep",
         .signal = POWER_DAEMONS " sleep",
         .deadline = 1s,
         .preparation = kStartPowerDaemons},
        {.event = "lid_open",
         .what = "the machine wakes",
         .signal = POWER_DAEMONS " wake",
         .deadline = 2s,
         .preparation = kStartPowerDaemons},
        {.event = "charger_disconnect",
         .what = "the charger is unplugged",
         .signal = POWER_DAEMONS " unplug",
         .deadline = 1s,
         .preparation = kStartPowerDaemons},
        {.event = "battery_low",
         .what = "the battery runs low",
         .signal = POWER_DAEMONS " charge 15",
         .deadline = 1s,
         .preparation = kStartPowerDaemons},
        {.event = "charger_connect",
         .what = "the charger is plugged in",
         .signal = POWER_DAEMONS " plug",
         .deadline = 1s,
         .preparation = kStartPowerDaemons},
        {.event = "trash_add",
         .what = "a file is put into the trash",
         .signal = "gio trash \"$HOME/chimewerk-demo\"",
         .deadline = 3s,
         .preparation = "echo demonstration >\"$HOME/chimewerk-demo\""},
        // Removes by name: emptying the whole trash would also empty the user's trash on
        // other volumes.
        {.event = "trash_empty",
         .what = "the trash is emptied",
         .signal = "gio remove trash:///chimewerk-demo",
         .deadline = 3s},
        {.event = "key_press",
         .what = "a key is pressed",
         .signal = "xdotool key a",
         .deadline = 1s},
        {.event = "volume_up",
         .what = "the output gets louder",
         .signal = "pactl set-sink-volume speaker 100%",
         .deadline = 1s,
         .preparation = "pactl set-sink-volume speaker 90%"},
        {.event = "volume_down",
         .what = "the output gets quieter",
         .signal = "pactl set-sink-volume speaker 90%",
         .deadline = 1s},
        // The program checks 1.5 s after the change.
        {.event = "screenshot",
         .what = "a screenshot appears",
         .signal = "touch \"$HOME/Desktop/Screenshot from today.png\"",
         .deadline = 3s,
         .preparation = "mkdir -p \"$HOME/Desktop\""},
        {.event = "app_launch",
         .what = "an application is started",
         .signal = "xclock 2>/dev/null &",
         .deadline = 3s},
        {.event = "lid_angle",
         .what = "the lid is opened past the threshold",
         .signal = "echo 'lid 120' >\"$CHIMEWERK_MACHINE\"",
         .deadline = 1s,
         .obstacle = kNeedsMachine},
        {.event = "brightness_up",
         .what = "the display gets brighter",
         .signal = "echo 'brightness 80' >\"$CHIMEWERK_MACHINE\"",
         .deadline = 1s,
         .obstacle = kNeedsMachine},
        {.event = "brightness_down",
         .what = "the display gets darker",
         .signal = "echo 'brightness 30' >\"$CHIMEWERK_MACHINE\"",
         .deadline = 1s,
         .obstacle = kNeedsMachine},
        {.event = "usb_connect",
         .what = "a USB device is plugged in",
         .signal = "echo usb >\"$CHIMEWERK_MACHINE\"",
         .deadline = 1s,
         .obstacle = kNeedsMachine},
        // The kernel takes up to a second to notice the cable, and the program polls every 2.5 s.
        {.event = "network_down",
         .what = "the network cable is pulled",
         .signal = "echo 'network down' >\"$CHIMEWERK_MACHINE\"",
         .deadline = 5s,
         .obstacle = kNeedsNetwork},
        {.event = "network_up",
         .what = "the network cable is plugged in",
         .signal = "echo 'network up' >\"$CHIMEWERK_MACHINE\"",
         .deadline = 5s,
         .obstacle = kNeedsNetwork},
    };
    return kRows;
}

}  // namespace chimewerk
