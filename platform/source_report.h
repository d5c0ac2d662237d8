// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// What a source of events says about itself to a user who hears nothing.
struct SourceReport {
    /// What it listens to, or what it lacks, in a few words: "evdev, 2 keyboards".
    std::string mechanism = {};
    /// Why its events cannot be heard now, as a sentence; empty if they can.
    std::string missing = {};
    /// The one thing to do about that, as a sentence; empty if there is nothing to do.
    std::string advice = {};
    /// Whether the hardware is missing.
    bool lacksHardware = false;

    bool operator==(const SourceReport&) const = default;
};

/// A source that can report on itself. Main thread only.
class ReportsItself {
public:
    virtual ~ReportsItself() = default;

    /// Returns how things stand now. May look at files and devices, but waits for nothing.
    virtual SourceReport report() = 0;
};

}  // namespace chimewerk
