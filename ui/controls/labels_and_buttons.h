// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>
#include <QPushButton>
#include <QString>
#include <string_view>

namespace chimewerk {

// Functions that make the labels and push buttons of the windows. The caller sets the parent.

/// The text colours of labels. A label follows its window from light to dark and back.
enum class LabelColor { label, secondary, tertiary, quaternary };

/// Makes a text on one line that cannot be edited. It is shown literally, never interpreted
/// as markup.
QLabel* makeLabel(const QString& text, int size, QFont::Weight weight = QFont::Normal,
                  LabelColor color = LabelColor::label);
/// Makes a text that is broken into lines.
QLabel* makeParagraph(std::string_view text, int size, LabelColor color);
/// Makes the heading of a section.
QLabel* makeSectionLabel(std::string_view text);
/// Makes a push button. An ampersand in the title is shown literally.
QPushButton* makeButton(const QString& title);

}  // namespace chimewerk
