# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Drives the windows of the program as a user does, with a pointer and a keyboard, and checks the settings file,
the sink and the screen. In a session of tools/session:

    dashboard_test.py PROGRAM
"""

import array
import json
import math
import os
import subprocess
import sys
import unittest
import wave
from pathlib import Path
from xml.etree import ElementTree

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tools"))
from tray_host import TrayHost, pump_until  # noqa: E402
from screen_reader import eventually, keys, pointer, type_text, wait_for_field, window, windows  # noqa: E402

PROGRAM = sys.argv.pop(1)
HOME = Path(os.environ["HOME"])
SETTINGS = Path(os.environ["XDG_CONFIG_HOME"]) / "chimewerk" / "settings.json"
ID = "org.chimewerk.Chimewerk"
DASHBOARD = "Chimewerk — Dashboard"
# The horizontal position of the check box in a row, 0 to 1.
CHECK_BOX = 0.91
RATE = 48000


def settings():
    try:
        return json.loads(SETTINGS.read_text(encoding="utf-8"))
    except (FileNotFoundError, json.JSONDecodeError):
        return {}


def event_settings(event):
    return settings().get("ChimewerkEvents", {}).get(event, {})


def make_tone(path, hertz):
    """Makes a sound of a third of a second with this pitch."""
    samples = array.array("h", (round(20000 * math.sin(2 * math.pi * hertz * i / RATE)) for i in range(RATE // 3)))
    with wave.open(str(path), "wb") as file:
        file.setparams((1, 2, RATE, len(samples), "NONE", ""))
        file.writeframes(samples.tobytes())


class Sink:
    """What the sink plays from now on."""

    def __init__(self):
        self._recorder = subprocess.Popen(
            ["parec", "--device=speaker.monitor", "--format=float32le", "--rate=48000", "--channels=1", "--raw",
             "--latency-msec=5"], stdout=subprocess.PIPE)
        os.set_blocking(self._recorder.stdout.fileno(), False)
        self._bytes = b""
        eventually(self._samples, "a recording of the sink")
        self._quiet = 0

    def _samples(self):
        self._bytes += self._recorder.stdout.read() or b""
        return array.array("f", self._bytes[:len(self._bytes) // 4 * 4])

    def wait_for_quiet(self):
        """Waits for half a second that ends in silence."""
        begin = len(self._samples())

        def quiet():
            samples = self._samples()
            self._quiet = len(samples)
            return len(samples) > begin + RATE // 2 and max(map(abs, samples[-RATE // 4:])) < 0.001
        eventually(quiet, "quiet")

    def wait_for_tone(self):
        """Waits for a sound and returns its pitch in hertz. Its first moments may be missing in the recording."""
        skipped, taken = RATE // 25, RATE // 10

        def heard():
            samples = self._samples()
            first = next((i for i in range(self._quiet, len(samples)) if abs(samples[i]) > 0.01), None)
            if first is None or len(samples) < first + skipped + taken:
                return None
            return samples[first + skipped:first + skipped + taken]
        tone = eventually(heard, "a sound")
        crossings = sum(1 for before, after in zip(tone, tone[1:]) if before < 0 <= after)
        return crossings * RATE / len(tone)

    def close(self):
        self._recorder.kill()
        self._recorder.wait()
        self._recorder.stdout.close()


class TheDashboard(unittest.TestCase):
    """The program, started for each test with factory settings and its dashboard open."""

    def setUp(self):
        SETTINGS.parent.mkdir(parents=True, exist_ok=True)
        SETTINGS.write_text('{"ChimewerkMicrophoneAllowed": true}', encoding="utf-8")
        self.start()
        self.addCleanup(self.end)
        self.dashboard = window(DASHBOARD)
        self.row("Single Knock")
        self.dashboard.wait_until_placed()

    def start(self, **changes):
        """Starts the program with these environment variables; None removes one."""
        environment = {**os.environ, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", **changes}
        self.program = subprocess.Popen([PROGRAM, "--open-dashboard"],
                                        env={name: value for name, value in environment.items() if value is not None})

    def end(self):
        if self.program.poll() is None:
            self.program.terminate()
            self.assertEqual(self.program.wait(10), 0)

    def row(self, label):
        return self.dashboard.find("table cell", label)

    def shows(self, text):
        return self.dashboard.find("label", text)

    def test_switches_an_event_by_its_check_box_and_by_its_switch(self):
        self.row("Single Knock").click(CHECK_BOX)
        eventually(lambda: event_settings("slap").get("enabled") is False, "slap off in the settings")
        self.assertFalse(self.row("Single Knock").has("CHECKED"))
        self.assertFalse(self.dashboard.find("check box", "Single Knock").has("CHECKED"))
        self.dashboard.find("check box", "Single Knock").click()
        eventually(lambda: event_settings("slap").get("enabled") is True, "slap on in the settings")
        self.assertTrue(self.row("Single Knock").has("CHECKED"))

        # By keyboard alone: down to the next event, then the space bar.
        self.row("Single Knock").click(0.3)
        keys("Down", "space")
        eventually(lambda: event_settings("lid_open").get("enabled") is False, "lid_open off in the settings")
        self.shows("Lid Open")
        self.assertFalse(self.row("Lid Open").has("CHECKED"))

    def test_counts_key_presses_once_their_event_is_on(self):
        self.row("Single Knock").click(0.3)
        keys("Down", "Down", "Down", "Down", "Down", "Down", "Down", "Down")
        self.shows("Key Press")
        self.dashboard.find("check box", "Key Press").click()
        self.shows("Keys are heard ✓")
        self.dashboard.wait_for_lack("button", "How to Allow This")
        pointer("key", "a")
        self.shows("Triggered: 1 time")
        self.dashboard.find("check box", "Key Press").click()
        eventually(lambda: event_settings("key_press").get("enabled") is False, "key_press off")
        pointer("key", "a")
        self.row("Key Press, 🍎 Classic, 1×")

    def test_sets_the_volume_by_a_drag_and_by_keys(self):
        slider = self.dashboard.find("slider", "Volume")
        slider.drag(0.96, 0.5)
        eventually(lambda: 0.4 < event_settings("slap").get("volume", 1) < 0.6, "half the volume in the settings")
        # Shown in whole per cent, rounded down, as 32-bit floats give it.
        self.shows(f"{int(array.array('f', [event_settings('slap')['volume'] * 100])[0])}%")
        keys("Home")
        eventually(lambda: event_settings("slap").get("volume") == 0, "no volume in the settings")
        self.shows("0%")

    def load(self, file):
        self.dashboard.find("button", "Load").click()
        wait_for_field()
        type_text(str(file))
        keys("Return")
        wait_for_field(gone=True)

    def test_loads_plays_and_removes_a_sound_of_the_users(self):
        sink = Sink()
        self.addCleanup(sink.close)
        for hertz in (440, 880):
            make_tone(HOME / "my tone.wav", hertz)
            self.load(HOME / "my tone.wav")
            self.shows("📁 my tone.wav")
            eventually(lambda: "path" in event_settings("slap"), "the path in the settings")
            sink.wait_for_quiet()
            self.dashboard.find("button", "Test Sound").click()
            self.assertAlmostEqual(sink.wait_for_tone(), hertz, delta=25)
        self.row("Single Knock, my tone.wav")
        (HOME / "no sound.wav").write_bytes(b"nothing of the kind")
        self.load(HOME / "no sound.wav")
        self.alert("Could Not Load Sound")
        keys("Escape")
        self.shows("📁 my tone.wav")
        self.assertEqual([path.name for path in (HOME / ".local/share/Chimewerk").iterdir()], ["my tone.wav"])

        self.dashboard.find("button", "Remove").click()
        self.shows("🍎 Classic")
        self.row("Single Knock, 🍎 Classic")
        eventually(lambda: not event_settings("slap").get("path"), "no path in the settings")
        self.assertTrue((HOME / ".local/share/Chimewerk/my tone.wav").exists())
        self.dashboard.wait_for_lack("button", "Remove")

    def alert(self, text):
        """Waits until the dialog with this text has the keyboard focus."""
        eventually(lambda: any(thing.name.startswith(text) for one in windows() if one.has("ACTIVE")
                               for thing in one.things() if thing.role == "label"), text)

    def choose_theme(self, *steps):
        self.dashboard.find("combo box").click()
        eventually(lambda: self.dashboard.find("combo box").has("EXPANDED"), "the menu of themes")
        keys(*steps, "Return")

    def wait_for_theme(self, name):
        eventually(lambda: self.dashboard.find("combo box").name == name, name)

    def test_makes_renames_and_deletes_a_theme(self):
        self.choose_theme("End")
        wait_for_field()
        type_text("  Focus ")
        keys("Return")
        self.row("Single Knock, — not set —")
        self.wait_for_theme("👤 Focus")
        self.dashboard.find("button", "Rename theme").click()
        wait_for_field()
        # The old name is selected, so that typing replaces it.
        type_text("Night")
        keys("Return")
        self.wait_for_theme("👤 Night")
        self.dashboard.find("button", "Delete theme").click()
        self.alert('Delete "Night"?')
        keys("Return")
        self.wait_for_theme("👤 Night")
        self.dashboard.find("button", "Delete theme").click()
        self.alert('Delete "Night"?')
        keys("Tab", "space")
        self.row("Single Knock, 🍎 Classic")
        self.dashboard.wait_for_lack("button", "Delete theme")

    def toggle(self):
        """Toggles Single Knock without the pointer, and returns as soon as that is done."""
        eventually(lambda: next((one for one in windows() if one.name == DASHBOARD), None),
                   DASHBOARD).find("check box", "Single Knock").toggle()

    def test_stores_a_change_made_just_before_its_end(self):
        self.toggle()
        self.end()
        self.assertIs(event_settings("slap")["enabled"], False, "lost by a signal")

        display = subprocess.Popen(["Xvfb", "-displayfd", "1"], stdout=subprocess.PIPE, text=True)
        self.addCleanup(display.stdout.close)
        self.addCleanup(display.kill)
        self.start(DISPLAY=":" + display.stdout.readline().strip())
        self.toggle()
        display.kill()
        display.wait()
        self.program.wait(10)
        self.assertIs(event_settings("slap")["enabled"], True, "lost with the display")

    def test_works_and_exits_cleanly_without_a_folder_for_its_settings(self):
        for changes in ({"HOME": None, "XDG_CONFIG_HOME": None, "XDG_DATA_HOME": None}, {"XDG_CONFIG_HOME": "/proc"},
                        {"XDG_CONFIG_HOME": "relative"}):
            with self.subTest(**changes):
                self.end()
                self.start(**changes)
                self.toggle()
                self.assertIsNone(self.program.poll())
        self.end()
        self.assertIs(event_settings("slap")["enabled"], False, "a relative folder counts as none")

    def test_has_the_menu_as_long_as_no_tray_has_it(self):
        def button():
            return [thing for thing in self.dashboard.things() if thing.name == "Menu" and thing.has("SHOWING")]
        self.assertTrue(button())
        for _ in range(2):
            host = TrayHost()
            self.assertTrue(pump_until(lambda: not button()))
            host.close()
            self.assertTrue(pump_until(button))

    def test_counts_events_while_it_is_hidden(self):
        keys("ctrl+w")
        eventually(lambda: not any(one.has("SHOWING") for one in windows()), "a closed window")
        file = HOME / "unwanted"
        file.write_text("for the trash", encoding="utf-8")
        sink = Sink()
        self.addCleanup(sink.close)
        subprocess.run(["gio", "trash", str(file)], check=True)
        sink.wait_for_tone()
        subprocess.run([PROGRAM], check=True)
        self.dashboard = window(DASHBOARD)
        keys("End", "Up", "Up", "Up", "Up")
        self.row("Trash Item Added, 🍎 Classic, 1×")

    def test_shows_what_the_command_line_changes(self):
        def ask(*options):
            return subprocess.run([PROGRAM, *options], capture_output=True, text=True, check=False, timeout=20)
        for option, argument in (("--theme", "Sci-Fi"), ("--disable", "Single Knock"), ("--enable", "volume_up")):
            answer = ask(option, argument)
            self.assertEqual((answer.returncode, answer.stdout + answer.stderr), (0, ""))
        self.row("Single Knock, 🚀 Sci-Fi")
        eventually(lambda: not self.row("Single Knock").has("CHECKED"), "an event switched off")
        eventually(lambda: not self.dashboard.find("check box", "Single Knock").has("CHECKED"), "its switch, too")
        listed = ask("--list").stdout
        self.assertRegex(listed, r"(?m)^slap +Single Knock +off +100 % +scifi$")
        self.assertRegex(listed, r"(?m)^volume_up +Volume Up +on ")
        self.assertIs(event_settings("slap")["enabled"], False)
        unknown = ask("--theme", "pino")
        self.assertEqual((unknown.returncode, unknown.stdout), (1, ""))
        self.assertIn("Did you mean piano", unknown.stderr)

        sink = Sink()
        self.addCleanup(sink.close)
        self.assertEqual(ask("--toggle-mute").stdout, "muted\n")
        ask("--play", "slap")
        sink.wait_for_quiet()
        self.assertEqual(ask("--toggle-mute").stdout, "not muted\n")
        ask("--play", "slap")
        sink.wait_for_tone()

    def test_says_how_it_hears_whether_it_runs_or_not(self):
        def check(**environment):
            answer = subprocess.run([PROGRAM, "--check", "--json"], capture_output=True, text=True, check=True, timeout=20,
                                    env={**os.environ, **environment})
            self.assertEqual(answer.stderr, "")
            found = json.loads(answer.stdout)
            return found["running"], {one["id"]: one for one in found["checks"]}
        file = HOME / "unwanted"
        file.write_text("for the trash", encoding="utf-8")
        subprocess.run(["gio", "trash", str(file)], check=True)
        eventually(lambda: "seconds_ago" in check()[1]["trash_add"], "a trash event heard")
        subprocess.run([PROGRAM, "--microphone", "allow"], check=True)
        eventually(lambda: check()[1]["slap"]["mechanism"] == "pulse: microphone", "the microphone")
        running, told = check()
        self.assertTrue(running)
        self.assertEqual(told["sound_output"]["mechanism"], "pulse: speaker, 100 %")
        self.assertEqual(told["key_press"]["mechanism"], "X11")
        self.assertEqual(told["trash_add"]["mechanism"], str(HOME / ".local/share/Trash"))
        self.assertIn(str(HOME / "Pictures"), told["screenshot"]["mechanism"])

        self.end()
        running, seen = check()
        self.assertFalse(running)
        seen["trash_add"]["seconds_ago"] = told["trash_add"]["seconds_ago"]
        self.assertEqual(seen, told)
        on_wayland = check(XDG_SESSION_TYPE="wayland")[1]
        self.assertRegex(on_wayland["key_press"]["mechanism"], "^evdev", "a module of its own")

    def test_serves_the_interface_that_its_description_promises(self):
        def interface_of(xml):
            node = ElementTree.fromstring(xml).find(f"interface[@name='{ID}1']")
            for part in node.iter():
                part.text = part.tail = None
            return ElementTree.canonicalize(ElementTree.tostring(node))
        promised = PROJECT / f"packaging/desktop/{ID}1.xml"
        served = subprocess.run(["gdbus", "introspect", "--session", "--xml", "--dest", ID, "--object-path",
                                 "/" + ID.replace(".", "/")], capture_output=True, text=True, check=True).stdout
        self.assertEqual(interface_of(served), interface_of(promised.read_text(encoding="utf-8")))


if __name__ == "__main__":
    unittest.main()
