#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Runs at the end of the demonstration: the dashboard must have counted each event that was heard.

    counters.py PROGRAM      with the events in $DEMO_HEARD
"""

import os
import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
from screen_reader import eventually, window  # noqa: E402

heard = os.environ["DEMO_HEARD"].split()
subprocess.run([sys.argv[1], "--open-dashboard"], check=True)
dashboard = window("Chimewerk — Dashboard")
eventually(lambda: any(thing.role == "table cell" for thing in dashboard.things()), "rows")
counted = [thing.name for thing in dashboard.things()
           if thing.role == "table cell" and re.search(r", \d+×$", thing.name)]
print(f"Counted in the dashboard: {len(counted)} of {len(heard)}.")
if len(counted) != len(heard):
    print("\n".join(counted))
    sys.exit(1)
