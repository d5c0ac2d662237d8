// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>
#include <QPushButton>
#include <QString>
#include <string_view>

namespace chimewerk {

// Makers of the texts and push buttons that the windows are made of. The caller gives each
// a parent.

/// Which of the text colours a label has. It follows its window from light to dark and back.
enum class LabelColor { label, secondary, tertiary, quaternary };

/// A text on one line that cannot be edited. It is shown as it is, never taken for markup.
QLabel* makeLabel(const QString& text, int size, QFont::Weight weight = QFont::Normal,
                  LabelColor color = LabelColor::label);
/// The same, broken into lines.
QLabel* makeParagraph(std::string_view text, int size, LabelColor color);
/// A text with a number in it, whose digits are equally wide.
QLabel* makeNumberLabel(std::string_view text, int size, LabelColor color);
/// The heading of a section.
QLabel* makeSectionLabel(std::string_view text);
/// An ampersand in the title is shown as one.
QPushButton* makeButton(const QString& title);

}  // namespace chimewerk
