#pragma once

#include <xcb/xproto.h>

#include <QApplication>

#include "support/eventually.h"

namespace chimewerk {

// Keys that tests of widgets press.
inline constexpr xcb_keysym_t kTab = 0xff09;
inline constexpr xcb_keysym_t kReturn = 0xff0d;
inline constexpr xcb_keysym_t kEscape = 0xff1b;

/// Lets the toolkit work until the condition holds, as long as `eventually()` waits; whether it came to hold.
template <typename Condition>
bool comesTrue(Condition condition) {
    return eventually([&condition] {
        QApplication::processEvents();
        return condition();
    });
}

}  // namespace chimewerk
