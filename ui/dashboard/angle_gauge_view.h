// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

namespace chimewerk {

/// A half-circle dial from 0° to 180° with the lid's angle as a needle and the threshold as a mark.
/// Setting a property does not repaint; call update() for that.
///
/// The labels reach beyond the dial's bounds into the view's contents' margins: a dial of width x
/// height needs a view that is `kOverhang` wider on both sides and `kOverhang` higher.
class AngleGaugeView final : public QWidget {
public:
    static constexpr int kOverhang = 8;

    explicit AngleGaugeView(QWidget* parent = nullptr);

    /// In degrees; negative: no reading yet.
    float currentAngle = -1.0F;
    /// In degrees.
    float threshold = 90.0F;
    bool sensorAvailable = false;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace chimewerk
