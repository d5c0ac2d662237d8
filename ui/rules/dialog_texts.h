#pragma once

#include <string>

namespace chimewerk {

/// The texts of a question to the user; beside the button that confirms there is one that cancels.
struct DialogTexts {
    std::string message;
    std::string informative;
    std::string confirm;

    bool operator==(const DialogTexts&) const = default;
};

inline constexpr char kCancelTitle[] = "Cancel";
/// Shown in the empty field for a new theme's name.
inline constexpr char kNewThemePlaceholder[] = "My Theme";

DialogTexts newThemeTexts();
DialogTexts renameThemeTexts();
DialogTexts deleteThemeTexts(const std::string& themeName);

}  // namespace chimewerk
