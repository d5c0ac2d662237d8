// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/score.h"

#include <stdexcept>
#include <string>
#include <string_view>

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {

double operator""_hz(const char* name, std::size_t length) {
    // Semitones above C, at the letter's place in "C D EF G A B".
    constexpr std::string_view kOctave = "C D EF G A B";
    const std::string_view text(name, length);
    const std::size_t letter = text.empty() ? std::string_view::npos : kOctave.find(text.front());
    if (letter == std::string_view::npos || text.size() < 2 || text.back() < '0' ||
        text.back() > '9') {
        throw std::invalid_argument("no note: " + std::string(text));
    }
    int semitone = static_cast<int>(letter) + 12 * (text.back() - '0');
    semitone += text[1] == '#' ? 1 : 0;
    semitone -= text[1] == 'b' ? 1 : 0;
    constexpr int kConcertPitch = 57;
    return 440.0 * semitones(semitone - kConcertPitch);
}

}  // namespace chimewerk::synth
