// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/labels_and_buttons.h"

#include <QEvent>

#include "ui/controls/fonts.h"
#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

QColor textColor(const ColorScheme& colors, LabelColor color) {
    switch (color) {
        case LabelColor::label:
            return colors.label;
        case LabelColor::secondary:
            return colors.secondaryLabel;
        case LabelColor::tertiary:
            return colors.tertiaryLabel;
        case LabelColor::quaternary:
            return colors.quaternaryLabel;
    }
    return colors.label;
}

/// A label whose colour follows the appearance of its window.
class RoleLabel final : public QLabel {
public:
    RoleLabel(const QString& text, LabelColor color) : QLabel(text), color_(color) { paint(); }

protected:
    void changeEvent(QEvent* event) override {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange) {
            paint();
        }
    }

private:
    void paint() {
        const QColor wanted = textColor(colorSchemeOf(*this), color_);
        if (palette().color(QPalette::WindowText) != wanted) {
            QPalette own;
            own.setColor(QPalette::WindowText, wanted);
            setPalette(own);
        }
    }

    const LabelColor color_;
};

}  // namespace

QLabel* makeLabel(const QString& text, int size, QFont::Weight weight, LabelColor color) {
    auto* const label = new RoleLabel(text, color);
    label->setTextFormat(Qt::PlainText);
    label->setFont(systemFont(size, weight));
    return label;
}

QLabel* makeParagraph(std::string_view text, int size, LabelColor color) {
    QLabel* const label = makeLabel(worded(text), size, QFont::Normal, color);
    label->setWordWrap(true);
    return label;
}

QLabel* makeSectionLabel(std::string_view text) {
    return makeLabel(worded(text), 12, QFont::DemiBold, LabelColor::secondary);
}

QPushButton* makeButton(const QString& title) {
    auto* const button =
        new QPushButton(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
    button->setFont(systemFont(13));
    return button;
}

}  // namespace chimewerk
