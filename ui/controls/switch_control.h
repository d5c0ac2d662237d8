#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

namespace chimewerk {

/// A switch: a knob that slides from one end of its track to the other. To the keyboard and to those who
/// cannot see it, it is a check box. It slides when the user moves it, and jumps when the program does.
class SwitchControl final : public QCheckBox {
public:
    /// How much wider and higher than its track it is on every side, for the ring around what has the
    /// keyboard.
    static constexpr int kOverhang = 3;

    explicit SwitchControl(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void checkStateSet() override;
    void nextCheckState() override;

private:
    void moveKnob(int milliseconds);

    /// Where the knob is, from 0 (off) to 1 (on).
    QVariantAnimation knob_;
};

}  // namespace chimewerk
