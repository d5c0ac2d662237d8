#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Tests of tools/session: it returns the command's status, sessions are separate, and nothing is left behind."""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = sys.argv.pop(1)
LIMIT = 30


def processes_of(folder):
    """Returns the processes started in the session with this folder, or in one with a folder below it."""
    mark = f"CHIMEWERK_SESSION={folder}".encode()
    found = []
    for entry in Path("/proc").glob("[0-9]*"):
        try:
            if mark in (entry / "environ").read_bytes():
                found.append((entry / "cmdline").read_bytes().replace(b"\0", b" "))
        except OSError:
            continue
    return found


def run(script):
    """Runs a shell script that prints nothing, in a session; returns the exit status and the session's folder."""
    result = subprocess.run([TOOL, "--", "sh", "-c", f"echo $CHIMEWERK_SESSION; {script}"],
                            stdout=subprocess.PIPE, text=True, timeout=LIMIT, check=False)
    return result.returncode, result.stdout.strip()


class ASession(unittest.TestCase):
    def assert_nothing_left(self, folder):
        self.assertTrue(folder.startswith(tempfile.gettempdir()), folder)
        self.assertFalse(os.path.exists(folder), folder)
        self.assertEqual(processes_of(folder), [])

    def test_returns_the_exit_status_and_leaves_nothing(self):
        stubborn = "trap '' TERM HUP; while :; do sleep 0.1; done"
        for script, expected in (("exit 0", 0), ("exit 7", 7), ("kill -KILL $$", 128 + 9), ("exec /no/such/command", 127),
                                 (f'setsid sh -c "({stubborn}) & ({stubborn}) &" >/dev/null', 0)):
            with self.subTest(script=script):
                status, folder = run(script)
                self.assertEqual(status, expected)
                self.assert_nothing_left(folder)
        self.assertEqual(subprocess.run([TOOL, "--", "/no/such/command"], timeout=LIMIT, check=False).returncode, 127)

    def test_ends_on_a_signal_after_the_command(self):
        script = """
            trap 'sleep 0.2; pactl get-default-sink; exit' TERM
            setsid sleep 1000 &
            echo $CHIMEWERK_SESSION
            while :; do sleep 0.05; done"""
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                process = subprocess.Popen([TOOL, "--", "sh", "-c", script], stdout=subprocess.PIPE, text=True)
                folder = process.stdout.readline().strip()
                process.send_signal(number)
                self.assertEqual(process.communicate(timeout=LIMIT)[0], "speaker\n")
                self.assertEqual(process.returncode, 128 + number)
                self.assert_nothing_left(folder)

    def test_ends_on_a_signal_while_it_starts(self):
        for delay in (0.05, 0.15, 0.3):
            with self.subTest(delay=delay), tempfile.TemporaryDirectory() as outside:
                environment = {**os.environ, "TMPDIR": outside}
                process = subprocess.Popen([TOOL, "--", "sleep", "1000"], env=environment)
                time.sleep(delay)
                process.terminate()
                process.wait(LIMIT)
                self.assertEqual(os.listdir(outside), [])
                self.assertEqual(processes_of(outside), [])

    def test_is_separate_from_another_session(self):
        script = """
            env
            pactl load-module module-null-sink sink_name=extra >/dev/null
            echo x >$HOME/thing; gio trash $HOME/thing
            %s -- sh -c 'env; pactl list short sinks; ls -A $XDG_DATA_HOME'
            pactl get-default-sink""" % TOOL
        result = subprocess.run([TOOL, "--", "sh", "-c", script], stdout=subprocess.PIPE, text=True, timeout=LIMIT, check=True)
        lines = result.stdout.splitlines()
        for name in ("HOME", "DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS",
                     "PULSE_SERVER", "CHIMEWERK_MICROPHONE"):
            self.assertEqual(len({line for line in lines if line.startswith(name + "=")}), 2, name)
        self.assertNotIn("extra", result.stdout)
        self.assertNotIn("Trash", lines)
        self.assertEqual(lines[-1], "speaker", "the end of one has ended the other")


if __name__ == "__main__":
    unittest.main()
