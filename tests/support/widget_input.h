#pragma once

#include <xcb/xproto.h>

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <string>

#include "support/x_pointer.h"
#include "tools/process/eventually.h"

namespace chimewerk {

// Keys that tests of widgets press.
inline constexpr xcb_keysym_t kTab = 0xff09;
inline constexpr xcb_keysym_t kReturn = 0xff0d;
inline constexpr xcb_keysym_t kEscape = 0xff1b;

/// Lets the toolkit work until the condition holds, as long as `eventually()` waits; whether it came to hold.
template <typename Condition>
bool comesTrue(Condition condition, std::chrono::milliseconds patience = std::chrono::seconds(5)) {
    return eventually(
        [&condition] {
            QApplication::processEvents();
            return condition();
        },
        patience);
}

/// Who works the program's widgets with pointer and keyboard, and sees what comes of it before the next move.
class WidgetUser : private QObject {
protected:
    WidgetUser() { qApp->installEventFilter(this); }

    /// Until the window has the keyboard and the toolkit knows where the window manager has put it.
    bool becomesReady(const QWidget& window) {
        return comesTrue([&] {
            const QPoint place = window.mapToGlobal(QPoint(0, 0));
            return window.isActiveWindow() &&
                   user.placeOf(static_cast<xcb_window_t>(window.winId())) ==
                       std::pair(place.x(), place.y());
        });
    }

    void moveTo(const QWidget& widget, const QPoint& place) {
        const QPoint there = widget.mapToGlobal(place);
        user.moveTo(there.x(), there.y());
    }
    void clickAt(const QWidget& widget, const QPoint& place) {
        moveTo(widget, place);
        settle();
        const int before = pressed_;
        user.press();
        user.release();
        settleAfter(before + 1);
    }
    void click(const QWidget& widget) { clickAt(widget, widget.rect().center()); }
    /// Where a dialog keeps clicks away from the widget.
    void clickInVain(const QWidget& widget) {
        moveTo(widget, widget.rect().center());
        user.press();
        user.release();
        settle();
    }
    void type(xcb_keysym_t key) { type(std::u32string{key}); }
    void type(const std::string& text) { type(std::u32string(text.begin(), text.end())); }

    /// Lets what has been sent to the windows arrive.
    static void settle() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(60);
        while (std::chrono::steady_clock::now() < end) {
            QApplication::processEvents(QEventLoop::AllEvents, 10);
        }
    }

    XPointer user;

private:
    void type(const std::u32string& keys) {
        const int before = pressed_;
        for (const char32_t key : keys) {
            user.type(key);
        }
        settleAfter(before + static_cast<int>(keys.size()));
    }
    /// Once so many buttons and keys have come; one that a shortcut has taken, or whose window closed before it, never
    /// does.
    void settleAfter(int presses) {
        comesTrue([&] { return pressed_ >= presses; }, std::chrono::seconds(1));
        settle();
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched->isWindowType() &&
            (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress)) {
            ++pressed_;
        }
        return false;
    }

    int pressed_ = 0;
};

}  // namespace chimewerk
