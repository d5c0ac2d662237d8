#pragma once

#include <string>
#include <vector>

namespace chimewerk {

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

/// How a kind of paragraph looks; lengths in device-independent pixels.
struct HelpStyle {
    int fontSize;
    bool bold;
    HelpColor color;
    /// Above the paragraph, in addition to what the one above keeps below itself.
    int spacingBefore;
    int spacingAfter;
    /// From the left, of all lines alike.
    int indent;
};

/// Below each line, in addition to what its font takes.
inline constexpr int kHelpLineSpacing = 2;

const HelpStyle& helpStyle(HelpKind kind);

struct HelpParagraph {
    HelpKind kind;
    /// As shown, with its number or sign, in UTF-8 and without a line feed.
    std::string text;
    /// That of its kind, but for the headings that have one of their own.
    HelpColor color;
};

/// The whole guide, from top to bottom.
std::vector<HelpParagraph> helpContent();

}  // namespace chimewerk
