# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Measures sounds: levels, spectrum, likeness, and the limits for the built sounds.

Samples are numpy arrays of mono samples at 48 kHz, full scale ±1. Levels are in decibels. Shares no code with the
synthesizer, so that an error in one is not hidden by the same error in the other.
"""

import struct
from pathlib import Path
from types import SimpleNamespace

import numpy as np

RATE = 48000
SILENCE = -200.0
FFT_SIZE = 2048
FREQUENCIES = np.arange(FFT_SIZE // 2 + 1) * RATE / FFT_SIZE

# The smallest distance between the portraits of two sounds that nobody confuses. Within a theme all
# sounds share a timbre, so their melodies must differ more.
UNLIKE = 8.0
UNLIKE_WITHIN_A_THEME = 10.0


def decode_wav(data):
    """Returns the samples in a WAV file's bytes. Raises ValueError unless it is 16-bit mono PCM at 48 kHz with
    correct sizes."""
    header = struct.Struct("<4sI4s4sIHHIIHH4sI")
    plain = (b"RIFF", len(data) - 8, b"WAVE", b"fmt ", 16, 1, 1, RATE, 2 * RATE, 2, 16, b"data", len(data) - header.size)
    if len(data) < header.size or len(data) % 2 != 0 or header.unpack_from(data) != plain:
        raise ValueError("not a plain WAV file of 16 bits, mono, 48 kHz")
    return np.frombuffer(data, "<i2", offset=header.size) / 32768


def read_wav(path):
    """Returns the samples of a file. Raises ValueError or OSError with the reason."""
    try:
        return decode_wav(Path(path).read_bytes())
    except ValueError as fault:
        raise ValueError(f"{path}: {fault}") from fault


def decibels(amplitude):
    return 20 * np.log10(amplitude) if amplitude > 1e-10 else SILENCE


def loudest_mean_square(samples, window):
    """Returns the mean square of the loudest `window` samples, with silence around the sound."""
    energy = np.concatenate((np.zeros(window), np.cumsum(samples**2)))
    return np.max(energy[window:] - energy[:-window]) / window


def loudness(samples):
    """Returns the loudness by ITU-R BS.1770 of the loudest 400 ms, with silence around the file, in LUFS: the
    standard's
    momentary loudness at its maximum. The gated loudness of a programme does not suit sounds that are mostly
    shorter than one of its blocks. A mono file plays on two loudspeakers, so its channel counts twice."""
    # The filters still ring when the sound has ended; the rest of the silence keeps the
    # wrapped-around end off the beginning.
    size = len(samples) + RATE // 2
    delay = np.exp(-2j * np.pi * np.arange(size // 2 + 1) / size)
    head = (np.polyval([1.19839281085285, -2.69169618940638, 1.53512485958697], delay)
            / np.polyval([0.73248077421585, -1.69065929318241, 1], delay))
    body = np.polyval([1, -2, 1], delay) / np.polyval([0.99007225036621, -1.99004745483398, 1], delay)
    weighted = np.fft.irfft(np.fft.rfft(samples, size) * head * body, size)
    square = loudest_mean_square(weighted, RATE * 4 // 10)
    return -0.691 + 10 * np.log10(2 * square) if square > 1e-20 else SILENCE


def longest_plateau(samples):
    """Returns the longest run of samples at the highest or the lowest value: a clipped sound has plateaus."""
    starts = np.concatenate(([0], np.flatnonzero(np.diff(samples)) + 1))
    lengths = np.diff(np.append(starts, len(samples)))
    return np.max(lengths[np.isin(samples[starts], (samples.min(), samples.max()))])


def levels(samples):
    """Returns measures of a sound over time. `first_step` and `last_step` are the levels of the first and the last
    sample; `ending` is the last 4 ms relative to the loudest 4 ms; `offset` is the mean relative to the peak."""
    if len(samples) == 0:
        samples = np.zeros(1)
    magnitude = np.abs(samples)
    peak = magnitude.max()
    window = RATE * 4 // 1000
    tail = np.sum(samples[-window:]**2) / window
    return SimpleNamespace(
        milliseconds=1000 * len(samples) / RATE,
        peak=decibels(peak),
        loudness=loudness(samples),
        onset=1000 * np.argmax(magnitude >= 0.01 * peak) / RATE,
        first_step=decibels(magnitude[0]),
        last_step=decibels(magnitude[-1]),
        ending=decibels(np.sqrt(tail)) - decibels(np.sqrt(loudest_mean_square(samples, window))),
        offset=decibels(abs(samples.mean())) - decibels(peak),
        plateau=longest_plateau(samples))


def faults(samples, is_key=False):
    """Returns the faults of a single sound, in words."""
    shortest, longest = (40, 140) if is_key else (150, 1200)
    found = levels(samples)
    return [fault for failed, fault in (
        (found.peak < -40, "silent"),
        (found.peak > -1, "peak above -1 dBFS"),
        (found.plateau > 4, "clipped"),
        (found.milliseconds < shortest - 1e-6, "too short"),
        (found.milliseconds > longest + 1e-6, "too long"),
        (found.onset > 3, "begins late"),
        (found.first_step > -60, "clicks at its start"),
        (found.last_step > -60, "clicks at its end"),
        (found.ending > -30, "cut"),
        (found.offset > -40, "off centre")) if failed]


def spectra(samples, hop, window=0.042):
    """Returns the power at each of FREQUENCIES, one row for every `hop` seconds, the first around the start of the
    sound.
    Each covers `window` seconds, at most 42 ms: a longer window separates tones better, a shorter one times."""
    size = min(FFT_SIZE, int(window * RATE))
    padded = np.concatenate((np.zeros(size // 2), samples, np.zeros(size)))
    frames = np.lib.stride_tricks.sliding_window_view(padded, size)[:len(samples):int(hop * RATE)]
    hann = 0.5 - 0.5 * np.cos(2 * np.pi * np.arange(size) / size)
    transformed = np.fft.rfft(frames * hann, FFT_SIZE)
    return transformed.real**2 + transformed.imag**2


def trend(samples):
    """Returns how far a sound rises (positive) or falls (negative) from its first to its last third, in octaves of
    the centre
    of its power spectrum. Moments more than 20 dB below the loudest do not count, louder ones count more. The power
    spectrum rather than the amplitude spectrum, because it follows the tones that are heard as the pitch and not the
    many weak partials above them, which die first in nearly every sound."""
    heard = spectra(samples, 0.01)[:, 2:]
    power = heard.sum(axis=1)
    loud = power >= 0.01 * max(power.max(initial=0), 1e-12)
    if not loud.any():
        return 0.0
    centres = (heard[loud] @ np.log2(FREQUENCIES[2:])) / power[loud]
    weights = np.sqrt(power[loud])
    third = max(1, len(centres) // 3)
    return (np.average(centres[-third:], weights=weights[-third:])
            - np.average(centres[:third], weights=weights[:third]))


def share_above(hertz, samples):
    """Returns the share (0 to 1) of the sound's power above a frequency."""
    power = spectra(samples, 0.02).sum(axis=0)
    return power[FREQUENCIES > hertz].sum() / power[1:].sum()


class Portrait:
    """The features by which the ear distinguishes sounds: the level in 23 bands of a third of an octave for every 20
    ms, in decibels
    above a floor 40 dB below the sound's loudest cell. It shows melody, rhythm and timbre, but not volume."""

    BANDS = np.clip(3 * np.log2(FREQUENCIES[1:] / 100) + 1.5, 0, 22).astype(int)
    BAND_OF_BIN = np.eye(23)[BANDS]

    def __init__(self, samples):
        power = spectra(samples, 0.02)[:, 1:] @ self.BAND_OF_BIN
        self.frames = np.maximum(0, 40 + 10 * np.log10(np.maximum(power, 1e-12) / max(power.max(), 1e-12)))

    def distance_to(self, other):
        """Returns the root mean square difference in decibels over all cells in which either sound is above its
        floor; 0 for a
        copy at any volume, about 25 for sounds with nothing in common."""
        shorter, longer = sorted((self.frames, other.frames), key=len)
        squares = np.sum((longer[:len(shorter)] - shorter)**2) + np.sum(longer[len(shorter):]**2)
        cells = np.count_nonzero(longer) + np.count_nonzero(shorter[longer[:len(shorter)] == 0])
        return np.sqrt(squares / max(cells, 1))

    def strokes(self):
        """Returns the number of onsets: moments at which many bands become louder together."""
        # Compares frames two apart, so that an onset between two frames counts fully.
        rises = np.maximum(0, self.frames[2:] - self.frames[:-2]).mean(axis=1) >= 3
        # The first frame counts as an onset.
        return 1 + np.count_nonzero(rises & ~np.concatenate(([True], rises))[:-1])
