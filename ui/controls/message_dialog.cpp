// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/message_dialog.h"

#include <QHBoxLayout>

#include "ui/controls/labels_and_buttons.h"
#include "ui/controls/window_frame.h"

namespace chimewerk {

namespace {

constexpr int kTextWidth = 300;
constexpr QSize kSignSize(44, 40);

/// Returns a text in up to `lines` lines, cut in its middle if it is longer.
QLabel* makeLines(const QString& text, int lines, int size, QFont::Weight weight,
                  LabelColor color) {
    QLabel* const label = makeLabel(text, size, weight, color);
    const QFontMetrics metrics(label->font());
    if (metrics.horizontalAdvance(text) > kTextWidth) {
        label->setText(metrics.elidedText(text, Qt::ElideMiddle, kTextWidth * lines));
        label->setToolTip(Qt::convertFromPlainText(text));
        label->setAccessibleName(text);
        label->setWordWrap(true);
        label->setFixedWidth(kTextWidth);
    }
    return label;
}

}  // namespace

MessageDialog::MessageDialog(QWidget* parent, const ColorScheme& colors, const Texts& texts)
    : QDialog(parent != nullptr ? parent->window() : nullptr),
      column_(new QVBoxLayout),
      buttons_(new QDialogButtonBox) {
    setWindowModality(Qt::WindowModal);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowCloseButtonHint);
    setPalette(paletteOf(colors));
    setDarkFrame(*this, colors.isDark());
    setWindowTitle(QStringLiteral("Chimewerk"));
    setAccessibleName(texts.message);
    setAccessibleDescription(texts.informative);

    column_->setSpacing(8);
    column_->addWidget(makeLines(texts.message, 3, 14, QFont::Bold, LabelColor::label));
    if (!texts.informative.isEmpty()) {
        column_->addWidget(
            makeLines(texts.informative, 6, 12, QFont::Normal, LabelColor::secondary));
    }
    auto* const row = new QHBoxLayout;
    row->setSpacing(14);
    if (!texts.sign.isEmpty()) {
        QLabel* const sign = makeLabel(texts.sign, 32);
        // An emoji is wider than the font that measures it says.
        sign->setFixedSize(kSignSize);
        sign->setAlignment(Qt::AlignCenter);
        row->addWidget(sign, 0, Qt::AlignTop);
    }
    row->addLayout(column_);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(24, 22, 24, 18);
    rows->setSpacing(16);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    rows->addLayout(row);
    rows->addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void MessageDialog::insert(QWidget* widget) {
    column_->addWidget(widget);
}

QPushButton* MessageDialog::addButton(const QString& title, QDialogButtonBox::ButtonRole role) {
    QPushButton* const button = makeButton(title);
    button->setMinimumWidth(84);
    // Only the first: a dialog makes every button that gets the keyboard its default otherwise.
    button->setAutoDefault(false);
    const bool isFirst = buttons_->buttons().isEmpty();
    buttons_->addButton(button, role);
    button->setDefault(isFirst);
    return button;
}

}  // namespace chimewerk
