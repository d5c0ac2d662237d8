// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/qt_program.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <cstdlib>

namespace chimewerk {
namespace {

TEST(TheToolkit, LeavesNoSettingsOfItsOwnToProgramsThatAreStarted) {
    unsetenv("QT_QPA_PLATFORM");
    unsetenv("QT_XCB_GL_INTEGRATION");
    int count = 1;
    char name[] = "chimewerk";
    char* arguments[] = {name, nullptr};
    const QtProgram toolkit(count, arguments, "org.chimewerk.Test");
    ASSERT_EQ(QGuiApplication::platformName(), "xcb");
    EXPECT_EQ(std::getenv("QT_QPA_PLATFORM"), nullptr);
    EXPECT_EQ(std::getenv("QT_XCB_GL_INTEGRATION"), nullptr);
}

}  // namespace
}  // namespace chimewerk
