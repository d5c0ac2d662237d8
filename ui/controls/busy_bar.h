// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProgressBar>
#include <QVariantAnimation>

namespace chimewerk {

/// A bar whose light moves to and fro, for work whose end is not known. It moves only while it is
/// visible.
class BusyBar final : public QProgressBar {
public:
    /// `width` is in device-independent pixels.
    explicit BusyBar(int width);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    /// The place of the light, from 0 to 1 and back.
    QVariantAnimation light_;
};

}  // namespace chimewerk
