#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""The demonstration must distinguish a program that plays from one that does not."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SESSION, DEMO = sys.argv.pop(1), sys.argv.pop(1)
FAKE_PROGRAM = str(Path(__file__).with_name("fake_program.py"))


def demonstrate(**environment):
    """Returns the exit status, the output and the size of the recording."""
    with tempfile.TemporaryDirectory() as folder:
        result = subprocess.run([SESSION, "--", DEMO, FAKE_PROGRAM, "trash_add", "trash_empty"], cwd=folder,
                                env={**os.environ, **environment}, stdout=subprocess.PIPE, text=True, timeout=60, check=False)
        recording = Path(folder, "demo-recording.wav")
        return result.returncode, result.stdout, recording.stat().st_size if recording.exists() else 0


class TheDemonstration(unittest.TestCase):
    def test_records_each_event(self):
        status, printed, recorded = demonstrate()
        self.assertEqual(status, 0, printed)
        for event in ("trash_add", "trash_empty"):
            self.assertRegex(printed, rf"(?m)^{event} +heard after +\d+ ms, -12.0 dBFS")
        self.assertGreater(recorded, 2 * 48000 * 8, "at least the quiet seconds before the two")

    def test_fails_when_the_program_has_a_fault(self):
        for environment, expected in (({"FAULT": "silent"}, "(?ms)^trash_add +NOT HEARD.*^trash_empty +NOT HEARD"),
                                      ({"FAKE_STATUS": "3"}, "(?s)heard after.*heard after.*ended with status 3"),
                                      ({"FAULT": "ends at once"}, "status 9 before it was ready")):
            with self.subTest(environment):
                status, printed, _ = demonstrate(**environment)
                self.assertEqual(status, 1)
                self.assertRegex(printed, expected)


if __name__ == "__main__":
    unittest.main()
