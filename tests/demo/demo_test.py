#!/usr/bin/python3
"""The demonstration must tell a program that is heard from one that is not."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SESSION, DEMO = sys.argv.pop(1), sys.argv.pop(1)
STAND_IN = str(Path(__file__).with_name("fake_program.py"))


def demonstrate(**environment):
    """The exit status, what was printed, and the size of the recording."""
    with tempfile.TemporaryDirectory() as folder:
        result = subprocess.run([SESSION, "--", DEMO, STAND_IN, "trash_add", "trash_empty"], cwd=folder, env={**os.environ, **environment},
                                stdout=subprocess.PIPE, text=True, timeout=60, check=False)
        recording = Path(folder, "demo-recording.wav")
        return result.returncode, result.stdout, recording.stat().st_size if recording.exists() else 0


class TheDemonstration(unittest.TestCase):
    def test_hears_each_event_and_records_it(self):
        status, printed, recorded = demonstrate()
        self.assertEqual(status, 0, printed)
        for event in ("trash_add", "trash_empty"):
            self.assertRegex(printed, rf"(?m)^{event} +heard after +\d+ ms, -12.0 dBFS")
        self.assertGreater(recorded, 2 * 48000 * 8, "at least the quiet seconds before the two")

    def test_fails_when_nothing_is_heard(self):
        status, printed, _ = demonstrate(STAND_IN="silent")
        self.assertEqual(status, 1)
        self.assertRegex(printed, "(?m)^trash_add +NOT HEARD")
        self.assertRegex(printed, "(?m)^trash_empty +NOT HEARD")

    def test_fails_when_the_program_does_not_end_as_it_should(self):
        status, printed, _ = demonstrate(STAND_IN_STATUS="3")
        self.assertEqual(status, 1)
        self.assertNotIn("NOT", printed)
        self.assertIn("ended with status 3", printed)

    def test_fails_when_the_program_does_not_stay(self):
        status, printed, _ = demonstrate(STAND_IN="ends at once")
        self.assertEqual(status, 1)
        self.assertIn("status 9 before it was ready", printed)


if __name__ == "__main__":
    unittest.main()
