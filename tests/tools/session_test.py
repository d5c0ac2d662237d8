#!/usr/bin/python3
"""Tests of tools/session: what a session offers, that two do not meet, and that nothing of one is left."""

import os
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = sys.argv.pop(1)
LIMIT = 30


def processes_of(folder):
    """Whoever was started in the session with this folder, or in one with its folder below this one."""
    mark = f"CHIMEWERK_SESSION={folder}".encode()
    found = []
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                if mark in (entry / "environ").read_bytes():
                    found.append((entry / "cmdline").read_bytes().replace(b"\0", b" "))
            except OSError:
                continue
    return found


class Running:
    """A session whose shell does what it is told, line by line."""

    def __init__(self):
        self.process = subprocess.Popen([TOOL, "--", "sh"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.folder = self.tell("echo $CHIMEWERK_SESSION")

    def tell(self, line):
        """Runs the line and returns what it printed."""
        self.process.stdin.write(line + "\necho; echo end-of-answer\n")
        self.process.stdin.flush()
        answer = []
        for text in self.process.stdout:
            if text == "end-of-answer\n":
                return "".join(answer).strip()
            answer.append(text)
        raise AssertionError("the session ended")

    def wait(self):
        self.process.stdin.close()
        self.process.stdout.close()
        return self.process.wait(LIMIT)

    def end(self):
        if self.process.poll() is None:
            self.process.terminate()
        self.wait()


def run(script):
    """The exit status and the folder of a session that runs a shell script which prints nothing."""
    result = subprocess.run([TOOL, "--", "sh", "-c", f"echo $CHIMEWERK_SESSION; {script}"],
                            stdout=subprocess.PIPE, text=True, timeout=LIMIT, check=False)
    return result.returncode, result.stdout.strip()


class ASession(unittest.TestCase):
    def running(self):
        session = Running()
        self.addCleanup(session.end)
        return session

    def assert_nothing_left(self, folder):
        self.assertTrue(folder.startswith(tempfile.gettempdir()), folder)
        self.assertFalse(os.path.exists(folder), folder)
        self.assertEqual(processes_of(folder), [])

    def test_hands_on_the_exit_status_and_leaves_nothing(self):
        for script, expected in (("exit 0", 0), ("exit 7", 7), ("kill -KILL $$", 128 + 9)):
            with self.subTest(script=script):
                status, folder = run(script)
                self.assertEqual(status, expected)
                self.assert_nothing_left(folder)

    def test_tells_when_there_is_no_such_command(self):
        result = subprocess.run([TOOL, "--", "/no/such/command"], stderr=subprocess.PIPE, text=True, timeout=LIMIT,
                                check=False)
        self.assertEqual(result.returncode, 127)
        self.assertIn("/no/such/command", result.stderr)

    def test_ends_what_the_command_leaves_behind(self):
        stubborn = "trap '' TERM HUP; while :; do sleep 0.1; done"
        status, folder = run(f'setsid sh -c "({stubborn}) & ({stubborn}) &" >/dev/null')
        self.assertEqual(status, 0)
        self.assert_nothing_left(folder)

    def test_is_ended_by_a_signal_which_lets_the_command_finish(self):
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

    def test_is_ended_by_a_signal_also_while_it_starts(self):
        for delay in (0.05, 0.15, 0.3):
            with self.subTest(delay=delay), tempfile.TemporaryDirectory() as outside:
                environment = {**os.environ, "TMPDIR": outside}
                process = subprocess.Popen([TOOL, "--", "sleep", "1000"], env=environment)
                time.sleep(delay)
                process.terminate()
                process.wait(LIMIT)
                self.assertEqual(os.listdir(outside), [])
                self.assertEqual(processes_of(outside), [])

    def test_does_not_meet_another(self):
        one, other = self.running(), self.running()
        for name in ("HOME", "DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS",
                     "PULSE_SERVER", "CHIMEWERK_MICROPHONE"):
            with self.subTest(name=name):
                values = [session.tell(f"echo ${name}") for session in (one, other)]
                self.assertNotIn("", values)
                self.assertNotEqual(values[0], values[1])

        one.tell("pactl load-module module-null-sink sink_name=extra; echo x >$HOME/thing; gio trash $HOME/thing")
        for look, mine in (("pactl list short sinks", "extra"), ("gio list trash:///", "thing")):
            with self.subTest(look=look):
                self.assertIn(mine, one.tell(look))
                self.assertNotIn(mine, other.tell(look))

        self.assertEqual(one.wait(), 0)
        self.assertIn("speaker", other.tell("pactl get-default-sink"))

    def test_has_two_buses_that_let_anyone_own_any_name(self):
        session = self.running()
        for bus in ("session", "system"):
            with self.subTest(bus=bus):
                answer = session.tell(f"gdbus call --{bus} -d org.freedesktop.DBus -o / "
                                      "-m org.freedesktop.DBus.RequestName org.freedesktop.login1 4")
                self.assertEqual(answer, "(uint32 1,)")

    def test_has_a_trash_that_can_be_emptied(self):
        session = self.running()
        session.tell("echo x >$HOME/thing; gio trash $HOME/thing")
        self.assertEqual(session.tell("ls $XDG_DATA_HOME/Trash/files"), "thing")
        session.tell("gio remove trash:///thing")
        self.assertEqual(session.tell("ls $XDG_DATA_HOME/Trash/files"), "")

    def test_has_an_audio_server_that_can_be_killed_and_started_again(self):
        session = self.running()
        session.tell("kill -KILL $(cat $PULSE_RUNTIME_PATH/pid)")
        self.assertEqual(session.tell("$CHIMEWERK_START_PULSEAUDIO && pactl get-default-sink && pactl get-default-source"),
                         "speaker\nmicrophone")

    def test_has_a_microphone_that_hears_what_is_fed(self):
        session = self.running()
        self.assertEqual(session.tell("pactl get-default-source"), "microphone")
        samples = struct.pack("<f", 0.25) * 480
        feeder = subprocess.Popen([sys.executable, "-c", FEEDER, session.tell("echo $CHIMEWERK_MICROPHONE"),
                                   samples.hex()])
        try:
            heard = session.tell("timeout 10 parec --raw --format=float32le --rate=48000 --channels=1 "
                                 "--latency-msec=10 2>/dev/null | head -c 48000 | od -An -v -t f4 | tr -s ' ' '\\n' | grep -c '^0.25$'")
        finally:
            feeder.kill()
            feeder.wait()
        self.assertGreater(int(heard), 4800)


# Ten milliseconds of sound every ten milliseconds, as a microphone gives them.
FEEDER = """
import sys, time
with open(sys.argv[1], "wb", buffering=0) as microphone:
    while True:
        microphone.write(bytes.fromhex(sys.argv[2]))
        time.sleep(0.01)
"""


if __name__ == "__main__":
    unittest.main()
