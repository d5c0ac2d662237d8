#pragma once

#include <optional>
#include <string>

#include "sound/sound_manager.h"

namespace chimewerk {

/// One row of the dashboard's table of events.
struct SidebarRow {
    std::string emoji;
    std::string name;
    /// Where the event's sound comes from.
    std::string hint;
    /// How often it was triggered; empty when never.
    std::string badge;
    /// Opacity of the texts, 0 to 1; never that of the switch or the lock.
    double alpha = 1.0;
    /// Whether the check box is set; none where a lock stands in its place.
    std::optional<bool> isOn;

    bool operator==(const SidebarRow&) const = default;
};

/// The lock of an event that cannot work on this machine.
inline constexpr char kLockEmoji[] = "🔒";

/// Whether the event cannot work on this machine, so that it has no switch.
bool isLocked(const SoundEvent& event, bool isAppleSilicon);

SidebarRow sidebarRow(const SoundEvent& event, const SoundManager& sounds, bool isAppleSilicon);

/// The row as a screen reader says it, but for its switch, which speaks for itself.
std::string spokenSidebarRow(const SidebarRow& row);

/// Where a part of a row is: from its left edge and from its top, in points. What a row is wider than 200
/// goes to the name and the hint; the badge and the switch keep their distance from the right edge.
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

/// The layout of a row of this width, in points.
SidebarRowLayout sidebarRowLayout(int width);

}  // namespace chimewerk
