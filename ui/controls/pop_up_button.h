// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QComboBox>

namespace chimewerk {

/// A button that shows the current choice and opens a menu of all choices. Only that menu
/// changes the choice, and emits `activated()`; neither the wheel nor a key changes it while the
/// menu is closed.
class PopUpButton final : public QComboBox {
public:
    PopUpButton();

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace chimewerk
