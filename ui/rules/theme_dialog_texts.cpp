// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/theme_dialog_texts.h"

#include <algorithm>
#include <array>

#include "ui/rules/value_texts.h"

namespace chimewerk {

namespace {

using namespace std::string_view_literals;

/// The tab and the space separators of Unicode, in UTF-8.
constexpr std::array kSpaces = {"\t"sv,           " "sv,
                                "\xC2\xA0"sv,     "\xE1\x9A\x80"sv,
                                "\xE2\x80\x80"sv, "\xE2\x80\x81"sv,
                                "\xE2\x80\x82"sv, "\xE2\x80\x83"sv,
                                "\xE2\x80\x84"sv, "\xE2\x80\x85"sv,
                                "\xE2\x80\x86"sv, "\xE2\x80\x87"sv,
                                "\xE2\x80\x88"sv, "\xE2\x80\x89"sv,
                                "\xE2\x80\x8A"sv, "\xE2\x80\xAF"sv,
                                "\xE2\x81\x9F"sv, "\xE3\x80\x80"sv};

}  // namespace

DialogTexts newThemeTexts() {
    return {.message = "New Custom Theme",
            .informative = "Enter a name for your new theme:",
            .confirm = "Create"};
}

DialogTexts renameThemeTexts() {
    return {.message = "Rename Theme", .informative = "Enter a new name:", .confirm = "Rename"};
}

DialogTexts deleteThemeTexts(const std::string& themeName) {
    return {.message = filled("Delete \"{}\"?", themeName),
            .informative = "This will permanently remove this custom theme.",
            .confirm = "Delete"};
}

std::string trimmedThemeName(std::string_view name) {
    const auto begins = [&name](std::string_view space) { return name.starts_with(space); };
    const auto ends = [&name](std::string_view space) { return name.ends_with(space); };
    const auto* found = kSpaces.begin();
    while ((found = std::ranges::find_if(kSpaces, begins)) != kSpaces.end()) {
        name.remove_prefix(found->size());
    }
    while ((found = std::ranges::find_if(kSpaces, ends)) != kSpaces.end()) {
        name.remove_suffix(found->size());
    }
    return std::string(name);
}

}  // namespace chimewerk
