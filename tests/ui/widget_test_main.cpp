// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include <QApplication>

#include "ui/toolkit/chimewerk_style.h"

/// Runs the tests of widgets, which need an application but no display.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setStyle(new chimewerk::ChimewerkStyle);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication application(argc, argv);
    // For this time, a menu opened by a click ignores further clicks.
    QApplication::setDoubleClickInterval(0);
    return RUN_ALL_TESTS();
}
