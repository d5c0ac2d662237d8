// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

namespace chimewerk {

/// The guide's window title, and the lines of its header.
inline constexpr char kHelpTitle[] = "Chimewerk — Help & Guide";
inline constexpr char kHelpName[] = "🔊  Chimewerk";
inline constexpr char kHelpMotto[] = "Your Mac, but louder.";
inline constexpr char kHelpVersionLine[] = "v5.0  ·  19 Events  ·  6 Themes  ·  Universal Binary";

/// The kinds of paragraph of the guide.
enum class HelpKind {
    h1,
    h2,
    body,
    tip,
    warn,
    step,
    icon,
    small,
    divider,
    permissionsSummary,
    /// An empty line.
    blank
};

enum class HelpColor { label, secondaryLabel, separator, accent, tipGreen, orange };

/// The style of a kind of paragraph. Lengths are device-independent pixels.
struct HelpStyle {
    int fontSize;
    bool bold;
    HelpColor color;
    /// Above the paragraph, in addition to the spacing below the one above.
    int spacingBefore;
    int spacingAfter;
    /// Of all lines, from the left edge.
    int indent;
};

/// Added to the height of each line's font.
inline constexpr int kHelpLineSpacing = 2;

const HelpStyle& helpStyle(HelpKind kind);

struct HelpParagraph {
    HelpKind kind;
    /// As shown, with its number or sign, in UTF-8 without a line feed.
    std::string text;
    /// The colour of its kind, or the heading's own colour.
    HelpColor color;
};

/// The whole guide, from top to bottom.
std::vector<HelpParagraph> helpContent();

}  // namespace chimewerk
