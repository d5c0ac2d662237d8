// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPainter>
#include <QStyleOption>

namespace chimewerk {

// Paints the parts of controls for `ChimewerkStyle`, in the colour scheme of the option's palette.
// Lengths are device-independent pixels. Each function restores the painter's state.

/// The kind of fill of a push button.
enum class ButtonKind { plain, standard, destructive };

void paintButton(QPainter& painter, const QStyleOption& option, ButtonKind kind);
/// Returns the colour of a button's title.
QColor buttonTextColor(const QStyleOption& option, ButtonKind kind);
void paintCheckBox(QPainter& painter, const QStyleOption& option);
void paintPopUpButton(QPainter& painter, const QStyleOption& option);
void paintSliderGroove(QPainter& painter, const QStyleOptionSlider& option, const QRect& groove,
                       const QRect& handle);
void paintSliderHandle(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle);
/// `opacity` is from 0 to 1.
void paintScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle,
                    qreal opacity);
void paintTextField(QPainter& painter, const QStyleOption& option);
/// Returns the shape of a menu's window.
QRegion roundedMenuShape(const QRect& window);
void paintMenuFrame(QPainter& painter, const QStyleOption& option);
void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& option);
/// Paints a ring within `rect` around the widget with the keyboard focus.
void paintFocusRing(QPainter& painter, const QStyleOption& option, const QRect& rect, qreal radius);
/// Returns whether the focus ring is shown: only while the user works with the keyboard.
bool showsFocusRing(const QStyleOption& option);

}  // namespace chimewerk
