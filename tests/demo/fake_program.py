#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""A fake program for the tests of the demonstration: plays a sound when the number of files in the trash changes, and
ends with the status in $FAKE_STATUS. $FAULT selects a fault."""

import os
import signal
import struct
import subprocess
import sys
import time
from pathlib import Path

FAULT = os.environ.get("FAULT", "")
TRASH = Path(os.environ["XDG_DATA_HOME"], "Trash/files")
PLAY = ["pacat", "--client-name=Chimewerk", "--latency-msec=20", "--format=s16le", "--rate=48000", "--channels=2"]
# A tenth of a second at a quarter of full scale.
SOUND = struct.pack("<h", 8192) * 9600


def items():
    return len(list(TRASH.glob("*")))


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(int(os.environ.get("FAKE_STATUS", "0"))))
    if FAULT == "ends at once":
        return 9
    with subprocess.Popen([*PLAY, "/dev/zero"]) as client:
        try:
            count = items()
            while True:
                time.sleep(0.1)
                before, count = count, items()
                if count != before and FAULT != "silent":
                    subprocess.run(PLAY, input=SOUND, check=True)
        finally:
            client.terminate()


if __name__ == "__main__":
    sys.exit(main())
