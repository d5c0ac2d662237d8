#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""The trial on desktops must count the sounds of a recording: no more than there are, and no fewer."""

import array
import sys
import tempfile
import unittest
import wave
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path

sys.dont_write_bytecode = True
LOADER = SourceFileLoader("listen", str(Path(__file__).parents[2] / "packaging/desktops/listen"))
LISTEN = module_from_spec(spec_from_loader("listen", LOADER))
LOADER.exec_module(LISTEN)
EVENTS = [f"event{number}" for number in range(19)]


class TheListener(unittest.TestCase):
    """What it finds in a recording of known sounds."""

    def heard(self, sounds, level=1.0, piece=1000):
        """Returns what is found in a recording with these events' sounds, by their starts in ms."""
        recording = array.array("h", bytes(2 * LISTEN.RATE * 2))
        with tempfile.TemporaryDirectory() as folder:
            LISTEN.make(Path(folder), EVENTS)
            for milliseconds, event in sounds:
                with wave.open(f"{folder}/{event}.wav") as file:
                    samples = array.array("h", file.readframes(file.getnframes()))
                for place, sample in enumerate(samples, milliseconds * LISTEN.RATE // 1000):
                    recording[place] += int(level * sample)
        data, tones = recording.tobytes(), LISTEN.Tones(EVENTS)
        return sorted(event for start in range(0, len(data), piece) for event in tones.begun(data[start:start + piece]))

    def test_each_sound_is_counted_once(self):
        # Starts beside the blocks' own, and pieces that cut samples in two.
        for start, piece, level in ((0, 1000, 1), (7, 333, 1), (13, 4097, 0.5), (19, 77, 0.25)):
            for event in EVENTS:
                with self.subTest(event=event, start=start, level=level):
                    self.assertEqual(self.heard([(start, event)], level, piece), [event])

    def test_sounds_at_the_same_time_are_told_apart(self):
        for first, second in (("event0", "event1"), ("event3", "event17"), ("event17", "event18")):
            for later in (0, 9, 30, 110):
                with self.subTest(first=first, second=second, later=later):
                    self.assertEqual(self.heard([(5, first), (5 + later, second)]), sorted([first, second]))

    def test_a_sound_that_plays_twice_is_counted_twice(self):
        self.assertEqual(self.heard([(0, "event4"), (250, "event4")]), ["event4", "event4"])

    def test_silence_is_no_sound(self):
        self.assertEqual(self.heard([]), [])


unittest.main()
