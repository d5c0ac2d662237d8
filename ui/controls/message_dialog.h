// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>

#include "ui/toolkit/color_scheme.h"

namespace chimewerk {

/// What all dialogs of the program have in common: its name as their title, a message in bold, a
/// text, and buttons below. They block their parent's window and are in its colours.
class MessageDialog : public QDialog {
public:
    struct Texts {
        QString message;
        /// Empty for none.
        QString informative;
        /// An emoji beside the texts; empty for none.
        QString sign = {};
    };

    MessageDialog(QWidget& parent, const Texts& texts)
        : MessageDialog(&parent, colorSchemeOf(*parent.window()), texts) {}
    /// Over a window in these colours; over none if `parent` is null.
    MessageDialog(QWidget* parent, const ColorScheme& colors, const Texts& texts);

    /// Puts a widget below the texts.
    void insert(QWidget* widget);
    /// Adds a button that accepts or rejects the dialog. The first becomes the default.
    QPushButton* addButton(const QString& title, QDialogButtonBox::ButtonRole role);

private:
    QVBoxLayout* const column_;
    QDialogButtonBox* const buttons_;
};

}  // namespace chimewerk
