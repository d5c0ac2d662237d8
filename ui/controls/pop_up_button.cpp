// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/pop_up_button.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QWheelEvent>

#include "ui/toolkit/color_scheme.h"

namespace chimewerk {

PopUpButton::PopUpButton() {
    // The items do not influence the width.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PopUpButton::showPopup() {
    // The menu is a separate window, which would have the desktop's colours.
    const QPalette colors = menuPaletteOf(colorSchemeOf(*this));
    view()->window()->setPalette(colors);
    view()->setPalette(colors);
    view()->setFont(font());
    QComboBox::showPopup();
}

void PopUpButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F4:
            showPopup();
            break;
        default:
            // NOLINTNEXTLINE(bugprone-parent-virtual-call): a QComboBox would choose by letters.
            QWidget::keyPressEvent(event);
    }
}

void PopUpButton::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace chimewerk
