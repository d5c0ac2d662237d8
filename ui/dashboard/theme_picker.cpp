// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/theme_picker.h"

#include <QHBoxLayout>
#include <utility>

#include "ui/controls/fonts.h"
#include "ui/controls/labels_and_buttons.h"
#include "ui/dashboard/theme_dialogs.h"
#include "ui/rules/theme_dialog_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

constexpr int kHeight = 26;
constexpr int kButtonWidth = 24;
constexpr int kControlHeight = 23;
/// The label's text begins below the window's title.
constexpr int kLabelIndent = 6;

QPushButton* makeSmallButton(const char* title, const char* tip) {
    QPushButton* const button = makeButton(worded(title));
    button->setFont(systemFont(11));
    button->setFixedSize(kButtonWidth, kControlHeight);
    button->setToolTip(worded(tip));
    button->setAccessibleName(worded(tip));
    // The menu keeps its width while the buttons are hidden.
    QSizePolicy policy = button->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button->setSizePolicy(policy);
    return button;
}

std::string trimmed(const QString& name) {
    return trimmedThemeName(name.toStdString());
}

}  // namespace

ThemePicker::ThemePicker(SoundManager& sounds, std::function<void()> onSoundsChanged)
    : sm_(sounds),
      onSoundsChanged_(std::move(onSoundsChanged)),
      themePopup_(new PopUpButton),
      renameThemeBtn_(makeSmallButton("✏", "Rename theme")),
      deleteThemeBtn_(makeSmallButton("✕", "Delete theme")) {
    setFixedHeight(kHeight);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    QLabel* const label = makeLabel(worded("Theme"), 10, QFont::DemiBold, LabelColor::secondary);
    label->setIndent(kLabelIndent);
    row->addWidget(label);
    row->addSpacing(6);
    row->addWidget(themePopup_);
    row->addSpacing(4);
    row->addWidget(renameThemeBtn_);
    row->addSpacing(2);
    row->addWidget(deleteThemeBtn_);
    themePopup_->setFont(systemFont(11));
    themePopup_->setFixedHeight(kControlHeight);
    themePopup_->setAccessibleName(worded("Theme"));
    connect(themePopup_, &QComboBox::activated, this, [this] { themePopupChanged(); });
    connect(renameThemeBtn_, &QPushButton::clicked, this, [this] { renameCustomThemeAction(); });
    connect(deleteThemeBtn_, &QPushButton::clicked, this, [this] { deleteCustomThemeAction(); });
}

void ThemePicker::rebuildThemePopup() {
    ThemeMenu menu = themeMenu(sm_);
    if (menu.items != items_) {
        items_ = std::move(menu.items);
        refill(items_);
    }
    themePopup_->setCurrentIndex(static_cast<int>(menu.selected));
    renameThemeBtn_->setVisible(menu.showsThemeButtons);
    deleteThemeBtn_->setVisible(menu.showsThemeButtons);
}

void ThemePicker::refill(const std::vector<ThemeMenuItem>& items) {
    themePopup_->clear();
    for (const ThemeMenuItem& item : items) {
        if (item.tag) {
            themePopup_->addItem(QString::fromStdString(item.title), *item.tag);
        } else {
            themePopup_->insertSeparator(themePopup_->count());
        }
    }
}

void ThemePicker::themePopupChanged() {
    const QVariant tag = themePopup_->currentData();
    const ThemeChoice choice =
        tag.isValid() ? themeChoice(tag.toInt(), sm_.customThemes.size()) : ThemeChoice{};
    switch (choice.kind) {
        case ThemeChoice::Kind::builtIn:
            sm_.setTheme(kAllThemes.at(choice.position));
            sm_.previewTheme(kAllThemes.at(choice.position));
            soundsChanged();
            break;
        case ThemeChoice::Kind::custom:
            sm_.setCustomTheme(sm_.customThemes.at(choice.position));
            soundsChanged();
            break;
        case ThemeChoice::Kind::newTheme:
            rebuildThemePopup();
            createNewCustomTheme();
            break;
        case ThemeChoice::Kind::none:
            rebuildThemePopup();
            break;
    }
}

void ThemePicker::soundsChanged() {
    onSoundsChanged_();
    rebuildThemePopup();
}

void ThemePicker::createNewCustomTheme() {
    askForName(*this, newThemeTexts(), {}, worded(kNewThemePlaceholder),
               [this](const QString& typed) {
                   if (std::string name = trimmed(typed); !name.empty()) {
                       sm_.createCustomTheme(std::move(name));
                       soundsChanged();
                   }
               });
}

void ThemePicker::renameCustomThemeAction() {
    const CustomTheme* const theme = sm_.activeCustomTheme();
    if (theme == nullptr) {
        return;
    }
    askForName(*this, renameThemeTexts(), QString::fromStdString(theme->name), {},
               [this, id = theme->id](const QString& typed) {
                   if (std::string name = trimmed(typed); !name.empty()) {
                       sm_.renameCustomTheme(id, std::move(name));
                       rebuildThemePopup();
                   }
               });
}

void ThemePicker::deleteCustomThemeAction() {
    const CustomTheme* const theme = sm_.activeCustomTheme();
    if (theme == nullptr) {
        return;
    }
    askToDestroy(*this, deleteThemeTexts(theme->name), [this, id = theme->id] {
        sm_.deleteCustomTheme(id);
        soundsChanged();
    });
}

}  // namespace chimewerk
