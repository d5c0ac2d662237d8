# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Tests the options that need no display, bus or home folder."""
import os
import subprocess
import sys
import unittest

PROGRAM = sys.argv.pop(1)
AWAY = ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "HOME")


def answer(*options):
    """Returns the exit status, the output and the errors."""
    bare = {name: value for name, value in os.environ.items() if name not in AWAY}
    ended = subprocess.run([PROGRAM, *options], env=bare, capture_output=True, text=True, timeout=20)
    return ended.returncode, ended.stdout, ended.stderr


class TheCommandLine(unittest.TestCase):
    def test_prints_the_version(self):
        status, output, errors = answer("--version")
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, r"^chimewerk \d+\.\d+\.\d+\n$")

    def test_prints_usage_when_asked_and_what_is_wrong_with_invalid_options(self):
        status, usage, errors = answer("--help")
        self.assertEqual((status, errors), (0, ""))
        self.assertEqual(answer("-h"), (0, usage, ""))
        for option in ("--open-dashboard", "--open-help", "--background", r"--microphone allow\|deny", "--quit",
                       "--play EVENT", "--list", "--version", "--help"):
            self.assertRegex(usage, rf"(?m)^  {option} +[a-z]")
        self.assertLessEqual(max(map(len, usage.splitlines())), 80)
        for options in (("--halp",), ("help",), ("--version", "--help"), ("",), ("--play",), ("--microphone", "maybe")):
            with self.subTest(options=options):
                status, output, errors = answer(*options)
                self.assertEqual((status, output), (2, ""))
                self.assertRegex(errors, r"^chimewerk: .*[.?]\n$")

    def test_says_that_nobody_hears_its_requests(self):
        for options in (("--mute",), ("--play", "slap"), ("--list",)):
            self.assertEqual(answer(*options), (1, "", "chimewerk: Chimewerk is not running.\n"))


if __name__ == "__main__":
    unittest.main()
