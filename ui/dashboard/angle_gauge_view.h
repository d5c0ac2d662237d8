#pragma once

#include <QWidget>

namespace chimewerk {

/// A half-circle dial from 0° to 180° with the lid's angle as a needle and the threshold as a mark. Setting a
/// property does not repaint: whoever sets one calls update().
///
/// The labels reach beyond the dial's own bounds, and so the contents' margins are theirs: a dial in bounds
/// of width x height needs a view that is `kOverhang` wider on both sides and `kOverhang` higher.
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
