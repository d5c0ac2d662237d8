// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>
#include <vector>

#include "sound/sound_manager.h"
#include "ui/controls/pop_up_button.h"
#include "ui/rules/theme_menu.h"

namespace chimewerk {

/// The dashboard's theme row: a menu of all themes, and buttons to rename and delete the custom
/// theme in use.
class ThemePicker final : public QWidget {
public:
    /// `onSoundsChanged` is called after a choice that may have changed any event's sound. The
    /// library must outlive the row.
    ThemePicker(SoundManager& sounds, std::function<void()> onSoundsChanged);

    /// Shows the library's themes and the one in use.
    void rebuildThemePopup();

private:
    void refill(const std::vector<ThemeMenuItem>& items);

    void themePopupChanged();
    void createNewCustomTheme();
    void renameCustomThemeAction();
    void deleteCustomThemeAction();
    void soundsChanged();

    SoundManager& sm_;
    const std::function<void()> onSoundsChanged_;
    /// The items of the menu.
    std::vector<ThemeMenuItem> items_;
    PopUpButton* const themePopup_;
    QPushButton* const renameThemeBtn_;
    QPushButton* const deleteThemeBtn_;
};

}  // namespace chimewerk
