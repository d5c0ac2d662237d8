// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/scroll_bar_fade.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <chrono>

#include "ui/toolkit/color_scheme.h"

namespace chimewerk {

namespace {

constexpr std::chrono::milliseconds kPause{900};
constexpr int kFadeMilliseconds = 250;

QWidget* areaOf(QScrollBar& bar) {
    for (QWidget* widget = bar.parentWidget(); widget != nullptr; widget = widget->parentWidget()) {
        if (qobject_cast<QAbstractScrollArea*>(widget) != nullptr) {
            return widget;
        }
    }
    return &bar;
}

/// Objects without meta-object are not found by their class.
QString nameOfFade() {
    return QStringLiteral("fade");
}

}  // namespace

void ScrollBarFade::addTo(QScrollBar& bar) {
    if (bar.findChild<QObject*>(nameOfFade(), Qt::FindDirectChildrenOnly) == nullptr) {
        new ScrollBarFade(bar);
    }
}

qreal ScrollBarFade::opacityOf(const QWidget* bar) {
    if (bar == nullptr || ColorScheme::isHighContrast()) {
        return 1;
    }
    const auto* const fade =
        bar->findChild<const QObject*>(nameOfFade(), Qt::FindDirectChildrenOnly);
    return fade == nullptr ? 1 : static_cast<const ScrollBarFade*>(fade)->opacity_;
}

ScrollBarFade::ScrollBarFade(QScrollBar& bar) : QObject(&bar), bar_(bar), area_(areaOf(bar)) {
    setObjectName(nameOfFade());
    pause_.setSingleShot(true);
    pause_.setInterval(kPause);
    connect(&pause_, &QTimer::timeout, this, [this] { fadeSoon(); });
    fading_.setStartValue(1.0);
    fading_.setEndValue(0.0);
    fading_.setDuration(kFadeMilliseconds);
    connect(&fading_, &QVariantAnimation::valueChanged, this, [this](const QVariant& now) {
        opacity_ = now.toReal();
        bar_.update();
    });
    connect(&bar_, &QScrollBar::valueChanged, this, [this] { appear(); });
    connect(&bar_, &QScrollBar::rangeChanged, this, [this] { appear(); });
    area_->installEventFilter(this);
    appear();
}

void ScrollBarFade::appear() {
    fading_.stop();
    opacity_ = 1;
    bar_.update();
    pause_.start();
}

/// Waits on while the scroll bar may be wanted.
void ScrollBarFade::fadeSoon() {
    if (bar_.isSliderDown()) {
        pause_.start();
    } else if (area_.isNull() || !area_->underMouse()) {
        fading_.start();
    }
}

bool ScrollBarFade::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Show:
        case QEvent::Enter:
        case QEvent::Leave:
            appear();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace chimewerk
