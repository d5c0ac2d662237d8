// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "sound/sound_manager.h"

namespace chimewerk {

/// One row of the dashboard's table of events.
struct SidebarRow {
    std::string emoji;
    std::string name;
    /// The source of the event's sound.
    std::string hint;
    /// How often it was triggered; empty if never.
    std::string badge;
    /// The opacity of the texts, 0 to 1. The switch and the lock are always opaque.
    double alpha = 1.0;
    /// Whether the check box is set; none if a lock is in its place.
    std::optional<bool> isOn;

    bool operator==(const SidebarRow&) const = default;
};

/// The lock of an event that cannot work on this machine.
inline constexpr char kLockEmoji[] = "🔒";

/// Returns whether the event cannot work on this machine and so has no switch.
bool isLocked(const SoundEvent& event, bool isAppleSilicon);

SidebarRow sidebarRow(const SoundEvent& event, const SoundManager& sounds, bool isAppleSilicon);

/// Returns the row as a screen reader speaks it, without the state of its check box.
std::string spokenSidebarRow(const SidebarRow& row);

/// The place of a part of a row, from its left edge and top, in device-independent pixels. Width
/// beyond 200 goes to the name and the hint; the badge and the switch keep their distance from the
/// right edge.
struct RowFrame {
    int x;
    int y;
    int width;
    int height;

    bool operator==(const RowFrame&) const = default;
};

struct SidebarRowLayout {
    RowFrame emoji;
    RowFrame name;
    RowFrame hint;
    RowFrame badge;
    RowFrame lock;
    RowFrame checkBox;
};

inline constexpr int kSidebarRowHeight = 56;

/// Returns the layout of a row of this width in device-independent pixels.
SidebarRowLayout sidebarRowLayout(int width);

}  // namespace chimewerk
