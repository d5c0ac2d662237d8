// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessible>
#include <QApplication>
#include <QTest>
#include <QWidget>
#include <stdexcept>
#include <vector>

#include "tools/process/eventually.h"

namespace chimewerk {

// Pointer and keyboard events for a window, as a window system sends them. The window finds the
// widget under the pointer, and a dialog blocks the other windows.

/// Runs the event loop until the condition holds. Returns false after 5 s.
template <typename Condition>
bool becomesTrue(Condition condition) {
    return eventually([&condition] {
        QApplication::processEvents();
        return condition();
    });
}

inline QPoint inWindow(const QWidget& widget, QPoint place) {
    return widget.mapTo(widget.window(), place);
}

/// Clicks with the left button.
inline void clickAt(const QWidget& widget, QPoint place) {
    QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      inWindow(widget, place));
    QApplication::processEvents();
}
inline void click(const QWidget& widget) {
    clickAt(widget, widget.rect().center());
}

/// Presses the left button at the first of these places and moves the pointer along the others.
inline void pressAndMove(const QWidget& widget, const std::vector<QPoint>& places) {
    QWindow* const window = widget.window()->windowHandle();
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, inWindow(widget, places.front()));
    for (const QPoint place : places) {
        QTest::mouseMove(window, inWindow(widget, place));
    }
    QApplication::processEvents();
}
inline void releaseAt(const QWidget& widget, QPoint place) {
    QTest::mouseRelease(widget.window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                        inWindow(widget, place));
    QApplication::processEvents();
}

/// Presses a key in the window that has keyboard focus.
inline void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QGuiApplication::focusWindow(), key, modifiers);
    QApplication::processEvents();
}
inline void type(const std::string& text) {
    for (const char letter : text) {
        QTest::keyClick(QGuiApplication::focusWindow(), letter);
    }
}

/// Returns all widgets of this class below `parent`; the class needs no meta-object.
template <typename Widget>
std::vector<Widget*> childrenOf(const QWidget& parent) {
    std::vector<Widget*> found;
    for (QWidget* const child : parent.findChildren<QWidget*>()) {
        if (auto* const one = dynamic_cast<Widget*>(child)) {
            found.push_back(one);
        }
    }
    return found;
}

inline QAccessibleInterface& accessible(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

/// Returns the visible widget with this accessible name.
template <typename Widget>
Widget& named(const QWidget& parent, const QString& name) {
    for (Widget* const each : childrenOf<Widget>(parent)) {
        if (each->isVisible() && accessible(*each).text(QAccessible::Name) == name) {
            return *each;
        }
    }
    throw std::out_of_range(name.toStdString());
}

/// Returns the modal dialog if it has this class.
template <typename Dialog>
Dialog* dialog() {
    return dynamic_cast<Dialog*>(QApplication::activeModalWidget());
}

/// Waits until a dialog of this class has keyboard focus.
template <typename Dialog>
bool dialogAppears() {
    return becomesTrue(
        [] { return dialog<Dialog>() != nullptr && dialog<Dialog>()->isActiveWindow(); });
}

}  // namespace chimewerk
