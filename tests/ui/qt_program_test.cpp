// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/qt_program.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <cstdlib>

namespace chimewerk {
namespace {

constexpr const char* kOwnVariables[] = {"QT_QPA_PLATFORM", "QT_XCB_GL_INTEGRATION",
                                         "QT_SCALE_FACTOR"};

TEST(TheToolkit, FollowsPlasmasTextSizeAndLeavesNoSettingsToProgramsThatAreStarted) {
    for (const char* const variable : kOwnVariables) {
        unsetenv(variable);
    }
    setenv("XDG_SESSION_TYPE", "wayland", 1);
    setenv("WAYLAND_DISPLAY", "does-not-exist", 1);
    setenv("QT_WAYLAND_FORCE_DPI", "144", 1);
    int count = 1;
    char name[] = "chimewerk";
    char* arguments[] = {name, nullptr};
    const QtProgram toolkit(count, arguments, "org.chimewerk.Test");
    ASSERT_EQ(QGuiApplication::platformName(), "xcb");
    EXPECT_EQ(qGuiApp->devicePixelRatio(), 1.5);
    for (const char* const variable : kOwnVariables) {
        EXPECT_EQ(std::getenv(variable), nullptr) << variable;
    }
}

}  // namespace
}  // namespace chimewerk
