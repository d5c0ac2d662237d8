// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

namespace chimewerk {

/// A switch: a knob on a track. It slides when the user moves it, and jumps when the program does.
/// For the keyboard and for assistive programs it is a check box.
class SwitchControl final : public QCheckBox {
public:
    /// By how much it exceeds its track on every side, which is room for the focus ring.
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
