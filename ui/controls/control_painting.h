#pragma once

#include <QPainter>
#include <QStyleOption>

namespace chimewerk {

/// How the parts of controls are painted; `ChimewerkStyle` says when. The look is that of the option's
/// palette, lengths are device-independent pixels. Each leaves the painter as it was.

/// What fills a push button.
enum class ButtonKind { plain, standard, destructive };

void paintButton(QPainter& painter, const QStyleOption& option, ButtonKind kind);
/// The colour of a button's title.
QColor buttonTextColor(const QStyleOption& option, ButtonKind kind);
/// `QStyle::State_Selected` stands for a background in the accent colour.
void paintCheckBox(QPainter& painter, const QStyleOption& option);
void paintPopUpButton(QPainter& painter, const QStyleOption& option);
void paintSliderGroove(QPainter& painter, const QStyleOptionSlider& option, const QRect& groove,
                       const QRect& handle);
void paintSliderHandle(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle);
void paintScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle);
void paintTextField(QPainter& painter, const QStyleOption& option);
void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& option);
/// Around what has the keyboard, within `rect`.
void paintFocusRing(QPainter& painter, const QStyleOption& option, const QRect& rect, qreal radius);
/// Whether a ring is due: only who works with the keyboard sees it.
bool showsFocusRing(const QStyleOption& option);

}  // namespace chimewerk
