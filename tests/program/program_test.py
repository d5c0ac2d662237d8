# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Starts the program as a desktop does and checks it from outside. In a session of tools/session:

    program_test.py PROGRAM
"""

import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
from tray_host import EmbeddingTray, NotificationServer, TrayHost, pump_until  # noqa: E402

PROGRAM = sys.argv.pop(1)
MENU = ("#Chimewerk, -, Open Dashboard [Control+D], Help & Troubleshooting [Control+?], -, "
        "Mic Sensitivity {Low (%s), Medium (%s), High (%s)}, -, Quit [Control+Q]")
DASHBOARD = "Chimewerk — Dashboard"
HELP = "Chimewerk — Help & Guide"
QUESTION = "Chimewerk"
SETTINGS = Path(os.environ["XDG_CONFIG_HOME"]) / "chimewerk" / "settings.json"


def windows(title):
    """Returns the visible windows with this title."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"], capture_output=True,
                           text=True, check=False)
    return found.stdout.split()


class ProgramTest(unittest.TestCase):
    """One instance of the program, started by the test and ended with it."""

    def setUp(self):
        self.started = []
        self.store({"ChimewerkMicrophoneAllowed": True, "ChimewerkStarted": True})

    def tearDown(self):
        for process in self.started:
            process.kill()
            process.wait()

    def store(self, settings):
        SETTINGS.parent.mkdir(parents=True, exist_ok=True)
        SETTINGS.write_text(json.dumps(settings), encoding="utf-8")

    def start(self, *arguments, **environment):
        process = subprocess.Popen([PROGRAM, *arguments], env={**os.environ, **environment})
        self.started.append(process)
        return process

    def host(self, shows=True):
        host = TrayHost(shows)
        self.addCleanup(host.close)
        return host

    def embedding_tray(self):
        tray = EmbeddingTray()
        self.addCleanup(tray.close)
        return tray

    def assert_ends(self, process, status=0):
        self.assertTrue(pump_until(lambda: process.poll() is not None), "it still runs")
        self.assertEqual(process.returncode, status)


class TheTrayIcon(ProgramTest):
    def marks(self, item):
        return ", ".join(child.text() for child in item.menu().children)

    def test_shows_the_menu_and_runs_the_chosen_entry(self):
        host = self.host()
        process = self.start()
        item = host.wait_for_item()
        self.assertEqual(self.marks(item), MENU % (" ", "x", " "))
        item.choose("High")
        self.assertTrue(pump_until(lambda: self.marks(item) == MENU % (" ", " ", "x")))
        item.choose("Chimewerk")
        item.choose("High")
        item.choose("Low")
        self.assertTrue(pump_until(lambda: self.marks(item) == MENU % ("x", " ", " ")))

        self.assertEqual(windows(DASHBOARD) + windows(HELP), [])
        item.activate()
        self.assertTrue(pump_until(lambda: len(windows(DASHBOARD)) == 1))
        item.choose("Open Dashboard")
        item.choose("Help & Troubleshooting")
        self.assertTrue(pump_until(lambda: len(windows(HELP)) == 1))
        self.assertEqual(len(windows(DASHBOARD)), 1)
        item.choose("Quit")
        self.assert_ends(process)

    def test_shows_a_mute_and_ends_it(self):
        host = self.host()
        process = self.start()
        item = host.wait_for_item()
        picture = item.property("IconPixmap")
        run = [process.args[0], "--mute"]
        subprocess.run(run, check=True)
        muted = (MENU % (" ", "x", " ")).replace("-, ", "-, Unmute, ", 1)
        self.assertTrue(pump_until(lambda: self.marks(item) == muted), self.marks(item))
        self.assertEqual(item.property("ToolTip")[2], "Chimewerk is muted")
        self.assertNotEqual(item.property("IconPixmap"), picture)
        item.choose("Unmute")
        self.assertTrue(pump_until(lambda: self.marks(item) == MENU % (" ", "x", " ")))
        self.assertEqual(item.property("IconPixmap"), picture)

    def test_is_sharp_at_the_sizes_of_panels_and_has_colour_on_a_rim(self):
        host = self.host()
        self.start()
        item = host.wait_for_item()
        pixmaps = {width: data for width, height, data in item.property("IconPixmap") if width == height}
        self.assertTrue({16, 22, 24, 32, 48, 64} <= set(pixmaps), set(pixmaps))
        for width, data in pixmaps.items():
            pixels = [tuple(data[i:i + 4]) for i in range(0, len(data), 4)]
            self.assertEqual(len(pixels), width * width)
            solid = [(r, g, b) for a, r, g, b in pixels if a > 200]
            self.assertTrue(any(min(pixel) > 200 for pixel in solid), "nothing light, for dark panels")
            self.assertTrue(any(g < 110 < b for _, g, b in solid), "nothing dark, for light panels")
        self.assertEqual(item.property("Status"), "Active")

    def test_appears_when_the_tray_starts_and_after_it_was_replaced(self):
        self.start()
        self.assertFalse(pump_until(lambda: False, 1.5))
        for _ in range(2):
            host = TrayHost()
            try:
                self.assertEqual(self.marks(host.wait_for_item()), MENU % (" ", "x", " "))
            finally:
                host.close()

    def test_holds_nothing_back_where_the_host_does_not_answer(self):
        self.host()  # Answers only while this test runs its event loop.
        process = self.start()
        muting = [process.args[0], "--mute"]
        while subprocess.run(muting, stderr=subprocess.DEVNULL, timeout=10).returncode != 0:
            self.assertIsNone(process.poll())

    def test_waits_for_a_host_that_comes_after_the_name_even_where_another_tray_embeds_windows(self):
        embedding = self.embedding_tray()
        host = self.host(shows=False)
        self.start()
        self.assertFalse(pump_until(lambda: host.registered or embedding.requests(), 2))
        host.begin_to_show()
        host.wait_for_item()

    def test_is_embedded_where_no_host_comes(self):
        embedding = self.embedding_tray()
        first = self.start()
        self.assertTrue(pump_until(embedding.requests, 4), "without the name there is nothing to wait for")
        first.terminate()
        self.assert_ends(first)
        host = TrayHost(shows=False)
        self.start()
        # Since Qt 6.8 only when nobody owns the name.
        pump_until(lambda: embedding.requests() == 2, 7)
        self.assertEqual(host.registered, [])
        host.close()
        self.assertTrue(pump_until(lambda: embedding.requests() == 2))


class TheWindows(ProgramTest):
    def test_have_a_title_an_icon_and_a_class_that_lead_to_the_desktop_entry(self):
        entry = Path(__file__).parents[2] / "packaging" / "desktop" / "chimewerk.desktop.in"
        wanted = re.search("^StartupWMClass=(.*)$", entry.read_text(encoding="utf-8"), re.MULTILINE)[1]
        self.store({"ChimewerkMicrophoneAllowed": True, "ChimewerkDarkMode": True})
        for option, title in ("--open-dashboard", DASHBOARD), ("--open-help", HELP):
            self.start(option)
            self.assertTrue(pump_until(lambda title=title: len(windows(title)) == 1))
            properties = subprocess.run(["xprop", "-id", windows(title)[0], "-notype", "_NET_WM_NAME", "WM_CLASS",
                                         "_GTK_THEME_VARIANT", "_NET_WM_ICON"], capture_output=True, text=True, check=True).stdout
            self.assertIn(f'_NET_WM_NAME = "{title}"\n', properties)
            self.assertIn(f'WM_CLASS = "{wanted}", "{wanted}"\n', properties)
            self.assertIn("Icon (48 x 48)", properties)
            self.assertEqual('_GTK_THEME_VARIANT = "dark"' in properties, title == DASHBOARD, "the title bar's colour")


class TheMicrophone(ProgramTest):
    def is_allowed(self):
        return json.loads(SETTINGS.read_text(encoding="utf-8")).get("ChimewerkMicrophoneAllowed")

    def recordings(self):
        return subprocess.run(["pactl", "list", "short", "source-outputs"], capture_output=True, text=True,
                              check=True).stdout.splitlines()

    def test_is_opened_only_with_the_users_permission_for_which_it_asks_once(self):
        self.store({"ChimewerkStarted": True})
        host = self.host()
        for answer, allowed in ("allow", True), ("deny", False):
            first = self.start()
            host.wait_for_item()
            if answer == "allow":
                self.assertTrue(pump_until(lambda: len(windows(QUESTION)) == 1))
                self.assertEqual(self.recordings(), [])
            else:
                self.assertTrue(pump_until(lambda: len(self.recordings()) == 1))
            self.assert_ends(self.start("--microphone", answer))
            self.assertTrue(pump_until(lambda n=int(allowed): len(self.recordings()) == n))
            self.assertTrue(pump_until(lambda allowed=allowed: self.is_allowed() is allowed))
            self.assertEqual(windows(QUESTION), [])
            self.assert_ends(self.start("--quit"))
            self.assert_ends(first)
            host.registered.clear()
        self.assert_ends(self.start("--microphone", "allow"))
        self.assertIs(self.is_allowed(), True, "no program runs")


class TheProgram(ProgramTest):
    def test_shows_nothing_when_a_session_manager_restores_it(self):
        process = self.start("-session", "10f1a")
        self.assertFalse(pump_until(lambda: process.poll() is not None, 1.5))
        self.assert_ends(self.start("-session", "10f1b"))
        self.assertEqual(windows(DASHBOARD), [])

    def test_opens_its_dashboard_at_the_very_first_start_but_not_at_login(self):
        host = self.host()
        for arguments, first in (((), True), ((), False), (("--background",), True)):
            self.store({"ChimewerkMicrophoneAllowed": True, **({} if first else {"ChimewerkStarted": True})})
            process = self.start(*arguments)
            host.wait_for_item()
            if first and not arguments:
                self.assertTrue(pump_until(lambda: len(windows(DASHBOARD)) == 1))
            self.assertEqual(len(windows(DASHBOARD)), int(first and not arguments))
            self.assert_ends(self.start("--quit"))
            self.assert_ends(process)
            host.registered.clear()

    def test_exits_cleanly_on_termination_signals(self):
        host = self.host()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            process = self.start()
            self.assertTrue(pump_until(lambda: host.registered))
            host.registered.clear()
            process.send_signal(signal.SIGPIPE)
            process.send_signal(number)
            self.assert_ends(process)

    def test_shows_its_dashboard_when_launched_again(self):
        host = self.host()
        first = self.start()
        host.wait_for_item()
        for option, title in ((), DASHBOARD), (("--open-help",), HELP):
            self.assertEqual(windows(title), [])
            self.assert_ends(self.start(*option))
            self.assertTrue(pump_until(lambda title=title: len(windows(title)) == 1))
        self.assert_ends(self.start("--quit"))
        self.assert_ends(first)
        self.assert_ends(self.start("--quit"))

    def test_keeps_one_of_two_simultaneous_launches(self):
        for _ in range(5):
            pair = [self.start(), self.start()]
            self.assertTrue(pump_until(lambda pair=pair: any(one.poll() is not None for one in pair)))
            self.assertFalse(pump_until(lambda pair=pair: all(one.poll() is not None for one in pair), 0.3))
            self.assertEqual([one.poll() for one in pair if one.poll() is not None], [0])
            self.assertTrue(pump_until(lambda: len(windows(DASHBOARD)) == 1))
            self.assert_ends(self.start("--quit"))
            self.assertTrue(pump_until(lambda pair=pair: all(one.poll() == 0 for one in pair)))

    def test_says_that_the_running_one_does_not_answer(self):
        host = self.host()
        hanging = self.start()
        host.wait_for_item()
        hanging.send_signal(signal.SIGSTOP)
        desktop = NotificationServer()
        self.addCleanup(desktop.close)
        second = self.start()
        self.assertTrue(pump_until(lambda: second.poll() is not None), "it waits forever")
        self.assertEqual(second.returncode, 1)
        self.assertEqual(desktop.shown, ["Chimewerk is running, but does not answer."])
        hanging.send_signal(signal.SIGCONT)
        hanging.terminate()
        self.assert_ends(hanging)

    def test_loads_no_opengl_and_keeps_the_last_keys_out_of_core_dumps(self):
        process = self.start("--open-dashboard")
        self.assertTrue(pump_until(lambda: len(windows(DASHBOARD)) == 1))
        facts = Path("/proc", str(process.pid))
        self.assertNotRegex((facts / "maps").read_text("utf-8"), "glx-integration|egl-integration")
        self.assertRegex((facts / "limits").read_text("ascii"), r"(?m)^Max core file size +[01] ")

    def test_needs_few_descriptors_and_says_when_there_are_fewer(self):
        for limit in ("64", "24:64", "24"):
            process = subprocess.Popen(["prlimit", f"--nofile={limit}", PROGRAM, "--open-dashboard"], stderr=subprocess.PIPE,
                                       text=True)
            self.started.append(process)
            ended = (1, "chimewerk: needs 64 open files, but only 24 are allowed; see 'ulimit -n'\n")
            if limit != "24":
                ended = (0, "")
                self.assertTrue(pump_until(lambda: len(windows(DASHBOARD)) == 1))
                process.terminate()
            said = process.communicate(timeout=10)[1]
            self.assertEqual((limit, process.returncode, said), (limit, *ended))

    def test_goes_on_with_its_own_modules_while_it_is_upgraded(self):
        host = self.host()
        with tempfile.TemporaryDirectory() as folder:
            built = Path(PROGRAM).parent.parent
            for part in "bin", "lib":
                shutil.copytree(built / part, Path(folder, part))
            Path(folder, "share").symlink_to(built / "share")
            program = Path(folder, "bin", Path(PROGRAM).name)
            process = subprocess.Popen([program])
            self.started.append(process)
            host.wait_for_item()
            # It answers when all its parts are there.
            self.assert_ends(self.start("--unmute"))
            for module in Path(folder, "lib", "chimewerk").iterdir():
                module.unlink()
                module.write_text("of another version", "ascii")
            self.assert_ends(self.start("--open-dashboard"))
            self.assertTrue(pump_until(lambda: len(windows(DASHBOARD)) == 1))
            self.assert_ends(self.start("--quit"))
            self.assert_ends(process)
            broken = subprocess.run([program], stderr=subprocess.PIPE, text=True, timeout=10)
            self.assertEqual(broken.returncode, 1)
            self.assertIn("a part of the program is missing: ", broken.stderr)

    def test_sleeps_while_nothing_happens(self):
        if b"libtsan" in Path(PROGRAM).read_bytes():
            self.skipTest("The sanitizer has a thread that wakes up all the time.")
        # The processes of udev are not needed, only its mark.
        udev = "mount -t tmpfs none /run && mkdir /run/udev && : >/run/udev/control && exec \"$0\""
        if Path("/run/udev/control").exists():
            process = self.start()
        elif os.geteuid() == 0:
            process = subprocess.Popen(["unshare", "--mount", "sh", "-c", udev, PROGRAM])
            self.started.append(process)
        else:
            self.skipTest("Without udev, the backlight is polled.")

        def wake_ups():
            statuses = [(thread / "status").read_text("ascii") for thread in Path("/proc", str(process.pid), "task").iterdir()]
            return sum(int(re.search(r"(?m)^voluntary_ctxt_switches:\s+(\d+)", status)[1]) for status in statuses)

        def is_quiet():
            before = wake_ups()
            pump_until(lambda: False, 2)
            return wake_ups() - before <= 1

        self.assertTrue(pump_until(is_quiet, 20))

    def test_runs_without_a_bus_and_without_a_display(self):
        for lack in ({"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}, {"DISPLAY": ""}, {"DISPLAY": ":99"}):
            process = self.start("--open-dashboard", **lack)
            self.assertFalse(pump_until(lambda: process.poll() is not None, 2), lack)
            process.terminate()
            self.assert_ends(process)


if __name__ == "__main__":
    unittest.main()
