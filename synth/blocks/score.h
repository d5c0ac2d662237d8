// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <initializer_list>

#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// The pitch of a note name, in hertz: "A4"_hz is 440, "C#5"_hz and "Db5"_hz are the same. A4 is
/// the A above middle C.
double operator""_hz(const char* name, std::size_t length);

/// One note of a score: when it begins (seconds), its pitch (hertz) and how loud it is.
struct Note {
    double at;
    double hertz;
    double level = 1.0;
};

/// Plays the notes on an instrument: anything that makes a Sound from a pitch in hertz.
template <typename Instrument>
Sound play(const Instrument& instrument, std::initializer_list<Note> notes) {
    Sound mix;
    for (const Note& note : notes) {
        mix.add(note.at, instrument(note.hertz), note.level);
    }
    return mix;
}

}  // namespace chimewerk::synth
