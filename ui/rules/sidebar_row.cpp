// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/sidebar_row.h"

#include "ui/rules/value_texts.h"

namespace chimewerk {

namespace {

constexpr int kBasicWidth = 200;

std::string hintOf(const SoundEvent& event, const SoundManager& sounds) {
    if (event.soundPath && !event.soundPath->empty()) {
        return lastPathComponent(*event.soundPath);
    }
    if (sounds.isCustomThemeActive()) {
        return "— not set —";
    }
    return std::string(displayName(sounds.currentTheme));
}

/// Converts from a frame whose origin is the bottom left corner of the row.
constexpr RowFrame fromBottom(int x, int bottom, int width, int height) {
    return {x, kSidebarRowHeight - bottom - height, width, height};
}

}  // namespace

bool isLocked(const SoundEvent& event, bool isAppleSilicon) {
    return event.id == event_ids::kLidAngle && !isAppleSilicon;
}

SidebarRow sidebarRow(const SoundEvent& event, const SoundManager& sounds, bool isAppleSilicon) {
    const bool locked = isLocked(event, isAppleSilicon);
    return {.emoji = event.emoji,
            .name = event.label,
            .hint = hintOf(event, sounds),
            .badge = event.triggerCount > 0 ? std::to_string(event.triggerCount) + "×" : "",
            .alpha = event.isEnabled ? 1.0 : 0.4,
            .isOn = locked ? std::nullopt : std::optional(event.isEnabled)};
}

std::string spokenSidebarRow(const SidebarRow& row) {
    return row.name + ", " + row.hint + (row.badge.empty() ? "" : ", " + row.badge) +
           (row.isOn ? "" : std::string(", ") + kLockEmoji);
}

SidebarRowLayout sidebarRowLayout(int width) {
    const int more = width - kBasicWidth;
    return {.emoji = fromBottom(10, 18, 36, 30),
            .name = fromBottom(52, 30, 108 + more, 18),
            .hint = fromBottom(52, 10, 100 + more, 16),
            .badge = fromBottom(152 + more, 10, 26, 16),
            .lock = fromBottom(180 + more, 19, 22, 20),
            .checkBox = fromBottom(183 + more, 21, 16, 16)};
}

}  // namespace chimewerk
