#include "ui/rules/dialog_texts.h"

namespace chimewerk {

DialogTexts newThemeTexts() {
    return {.message = "New Custom Theme",
            .informative = "Enter a name for your new theme:",
            .confirm = "Create"};
}

DialogTexts renameThemeTexts() {
    return {.message = "Rename Theme", .informative = "Enter a new name:", .confirm = "Rename"};
}

DialogTexts deleteThemeTexts(const std::string& themeName) {
    return {.message = "Delete \"" + themeName + "\"?",
            .informative = "This will permanently remove this custom theme.",
            .confirm = "Delete"};
}

}  // namespace chimewerk
