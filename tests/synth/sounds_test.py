#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Checks the built sounds against the limits of docs/sounds.md, and checks that each measure detects its fault."""

import sys
import unittest
from collections import defaultdict
from itertools import combinations
from pathlib import Path

import numpy as np

SOUNDS, TOOLS = Path(sys.argv.pop(1)), sys.argv.pop(1)
sys.path.insert(0, TOOLS)
sys.dont_write_bytecode = True
from measures import (RATE, UNLIKE, UNLIKE_WITHIN_A_THEME, Portrait, decode_wav, faults, loudness, read_wav,  # noqa: E402
                      share_above, trend)

BUILT = {path.relative_to(SOUNDS): read_wav(path) for path in sorted(SOUNDS.rglob("*.wav"))}
PORTRAITS = {path: Portrait(samples) for path, samples in BUILT.items()}


def is_key(path):
    return "key_" in path.name


def group(path):
    return path.name.split("_")[1] if path.name.startswith("t_") else "keys" if is_key(path) else "alerts"


def of_event(event):
    """Returns the sound of an event in each of the six themes."""
    found = {path: samples for path, samples in BUILT.items() if path.name == f"t_{group(path)}_{event}.wav"}
    assert len(found) == 6, event
    return found


class TheBuiltSounds(unittest.TestCase):
    def test_have_no_fault(self):
        self.assertEqual(len(BUILT), 137)
        for path, samples in BUILT.items():
            self.assertEqual(faults(samples, is_key(path)), [], path)

    def test_are_equally_loud_and_their_keys_quieter(self):
        events, keys = defaultdict(list), defaultdict(list)
        for path, samples in BUILT.items():
            (keys if is_key(path) else events)[group(path)].append(loudness(samples))
        reference = np.mean(events["classic"])
        for name, values in events.items():
            with self.subTest(group=name):
                self.assertLessEqual(np.ptp(values), 2)
                self.assertAlmostEqual(np.mean(values), reference, delta=0.5)
        for name, values in keys.items():
            with self.subTest(keys=name):
                self.assertTrue(all(6 <= reference - value <= 10 for value in values), values)

    def test_are_unlike_each_other(self):
        for one, other in combinations(BUILT, 2):
            least = UNLIKE_WITHIN_A_THEME if group(one) == group(other) else UNLIKE
            self.assertGreaterEqual(PORTRAITS[one].distance_to(PORTRAITS[other]), least, f"{one}, {other}")

    def test_rise_and_fall_as_their_events_do(self):
        # Even in a short sound, about two semitones up and three down can be heard.
        for event in ("lid_open", "charger_connect", "brightness_up", "volume_up", "network_up"):
            for path, samples in of_event(event).items():
                self.assertGreaterEqual(trend(samples), 0.17, path)
        for event in ("lid_close", "charger_disconnect", "brightness_down", "volume_down", "network_down"):
            for path, samples in of_event(event).items():
                self.assertLessEqual(trend(samples), -0.25, path)

    def test_are_audible_on_small_loudspeakers(self):
        for path, samples in BUILT.items():
            self.assertGreaterEqual(share_above(300, samples), 0.15, path)

    def test_warn_in_several_strokes_without_being_shrill(self):
        for path, samples in of_event("battery_low").items():
            self.assertGreaterEqual(PORTRAITS[path].strokes(), 4, path)
            self.assertLessEqual(share_above(4000, samples), 0.10, path)

    def test_allow_fifteen_key_presses_a_second(self):
        for path, samples in [*of_event("key_click").items(), (Path("key_click.wav"), BUILT[Path("key_click.wav")])]:
            self.assertLessEqual(np.sum(samples[RATE // 15:]**2), 0.01 * np.sum(samples**2), path)


def sweep(start, end, seconds, amplitude):
    """Returns a sine whose frequency moves evenly from one pitch to another."""
    pitch = np.geomspace(start, end, int(seconds * RATE))
    return amplitude * np.sin(2 * np.pi * (np.cumsum(pitch) - pitch) / RATE)


def good_sound():
    """Returns a sound without faults, one second long."""
    time = np.arange(RATE) / RATE
    return sweep(500, 500, 1, 0.5) * np.minimum(1, time / 0.002) * np.exp(-6 * time)


def part(samples, start, end):
    return samples[int(start * RATE):int(end * RATE)]


def later(samples, seconds):
    return np.concatenate((np.zeros(int(seconds * RATE)), samples))


class TheMeasures(unittest.TestCase):
    def test_detect_each_fault_in_a_good_sound(self):
        good = good_sound()
        self.assertEqual(faults(good), [])
        self.assertIn("too long", faults(good, is_key=True))
        for fault, samples in (
                ("silent", np.zeros(0)),
                ("silent", np.zeros(RATE // 2)),
                ("silent", 0.001 * good),
                ("peak above -1 dBFS", 1.9 * good),
                ("clipped", np.clip(good, -0.3, 0.3)),
                ("too short", part(good, 0, 0.1)),
                ("too long", later(good, 0.3)),
                ("begins late", later(good, 0.01)),
                ("clicks at its start", part(good, 0.0105, 1)),
                ("clicks at its end", part(good, 0, 0.2105)),
                ("cut", part(good, 0, 0.21)),
                ("off centre", good + 0.01)):
            with self.subTest(fault=fault):
                self.assertIn(fault, faults(samples))

    def test_give_the_loudness_that_the_standard_defines(self):
        for tone, expected, tolerance in (
                # A full-scale sine of 997 Hz measures -3.01 LUFS in one channel; a file counts twice.
                (sweep(997, 997, 1, 1), 0, 0.05),
                (sweep(997, 997, 1, 0.1), -20, 0.05),
                # Half of the window filled is half the power.
                (sweep(997, 997, 0.2, 1), -3, 0.1),
                # The weighting reduces low tones and raises high ones.
                (sweep(40, 40, 1, 1), -5.7, 1),
                (sweep(8000, 8000, 1, 1), 3.3, 0.4)):
            self.assertAlmostEqual(loudness(tone), expected, delta=tolerance)

    def test_distinguish_rising_falling_and_level_sounds(self):
        for start, end, octaves, tolerance in ((400, 1600, 4 / 3, 0.15), (1600, 400, -4 / 3, 0.15), (700, 700, 0, 0.02)):
            self.assertAlmostEqual(trend(sweep(start, end, 0.6, 0.5)), octaves, delta=tolerance)

    def test_recognise_copies_of_a_sound(self):
        for path, samples in BUILT.items():
            higher = np.interp(np.arange(0, len(samples) - 1, 1.015), np.arange(len(samples)), samples)
            for copy, least in ((0.4 * samples, 0.01), (later(samples, 0.002), UNLIKE), (higher, UNLIKE)):
                self.assertLess(PORTRAITS[path].distance_to(Portrait(copy)), least, path)

    def test_count_strokes_and_find_the_share_of_the_high_tones(self):
        stroke = part(good_sound(), 0, 0.3)
        self.assertEqual(Portrait(stroke).strokes(), 1)
        self.assertEqual(Portrait(np.tile(stroke, 3)).strokes(), 3)
        self.assertLess(share_above(4000, sweep(1000, 1000, 0.5, 0.5)), 0.01)
        self.assertGreater(share_above(4000, sweep(6000, 6000, 0.5, 0.5)), 0.99)

    def test_refuse_a_file_that_is_not_what_its_header_says(self):
        good = bytearray(next(SOUNDS.glob("*.wav")).read_bytes()[:40] + b"\4\0\0\0" + b"\0\x40\0\xC0")
        good[4:8] = (40).to_bytes(4, "little")
        self.assertEqual(list(decode_wav(good)), [0.5, -0.5])
        for place in (0, 4, 8, 20, 22, 25, 34, 36, 40):
            wrong = bytearray(good)
            wrong[place] += 1
            self.assertRaises(ValueError, decode_wav, wrong)
        self.assertRaises(ValueError, decode_wav, good[:-1])
        self.assertRaises(ValueError, decode_wav, b"")


if __name__ == "__main__":
    unittest.main()
