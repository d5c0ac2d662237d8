// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

namespace chimewerk {

/// A line one pixel high between two parts of a window, in the colours of the window.
class Hairline final : public QWidget {
public:
    explicit Hairline(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace chimewerk
