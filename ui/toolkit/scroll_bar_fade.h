// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QVariantAnimation>

namespace chimewerk {

/// Shows a scroll bar while its area is scrolled or the pointer is over it, and lets it fade away
/// soon after. Belongs to the scroll bar. Main thread only.
class ScrollBarFade final : public QObject {
public:
    /// Lets the scroll bar fade. Does nothing if it does already.
    static void addTo(QScrollBar& bar);

    /// Returns how much of this scroll bar is to be seen, from 0 to 1. It is 1 for a widget that
    /// does not fade, and in high contrast.
    static qreal opacityOf(const QWidget* bar);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ScrollBarFade(QScrollBar& bar);
    void appear();
    void fadeSoon();

    QScrollBar& bar_;
    /// What is scrolled.
    const QPointer<QWidget> area_;
    QTimer pause_;
    QVariantAnimation fading_;
    qreal opacity_ = 1;
};

}  // namespace chimewerk
