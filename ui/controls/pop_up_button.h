#pragma once

#include <QComboBox>

namespace chimewerk {

/// A button that shows a choice and opens the menu of all. What is chosen changes only in that menu, by
/// `activated()`: no turn of the wheel and no key changes it unseen.
class PopUpButton final : public QComboBox {
public:
    PopUpButton();

    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace chimewerk
