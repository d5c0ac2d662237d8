// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "tools/process/shell.h"

namespace chimewerk {

/// Ends all streams of a kind, "sink-input" or "source-output", at the audio server. PulseAudio and
/// PipeWire have different commands for that. Returns whether it succeeded.
inline bool killStreams(const std::string& kind) {
    return runShell("kind=" + kind + R"sh(
        objects=$(pactl list ${kind}s | sed -n 's/.*object.id = "\(.*\)"/\1/p')
        for object in $objects; do
            pw-cli destroy $object || exit
        done
        [ "$objects" ] && exit
        for stream in $(pactl list short ${kind}s | cut -f1); do
            pacmd kill-$kind $stream >/dev/null || exit
        done)sh") == 0;
}

}  // namespace chimewerk
