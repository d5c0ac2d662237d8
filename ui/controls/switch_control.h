// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

namespace chimewerk {

/// A switch: a knob on a track. The knob slides when the user moves it and jumps when the program
/// does. To the keyboard and assistive programs it is a check box.
class SwitchControl final : public QCheckBox {
public:
    /// The margin around the track on every side, which leaves room for the focus ring.
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

    /// The position of the knob, from 0 (off) to 1 (on).
    QVariantAnimation knob_;
};

}  // namespace chimewerk
