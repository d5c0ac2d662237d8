#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""The helper of the udev rule must succeed for the descriptor of a hinge sensor alone, and must give up the rights of root."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HELPER, DESCRIPTORS = (sys.argv.pop(1) for _ in range(2))


class TheHingeSensorHelper(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.folder.chmod(0o755)

    def status(self, name, mode=0o444):
        file = self.folder / name
        if Path(DESCRIPTORS, name).exists():
            shutil.copy(Path(DESCRIPTORS, name), file)
            file.chmod(mode)
        return subprocess.run([HELPER, file], check=False).returncode

    def test_recognises_the_sensor_alone(self):
        self.assertEqual(self.status("sleepy_lid"), 0)
        self.assertEqual(self.status("angle_report"), 1)
        self.assertEqual(self.status("no_such_file"), 1)

    @unittest.skipIf(os.geteuid() != 0, "only root has rights to give up")
    def test_reads_nothing_that_root_alone_may_read(self):
        self.assertEqual(self.status("sleepy_lid", 0o400), 1)


if __name__ == "__main__":
    unittest.main()
