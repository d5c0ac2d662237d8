#include <gmock/gmock.h>

#include <QApplication>

#include "ui/controls/chimewerk_style.h"

/// Runs the tests of widgets, which need an application around them but no display.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setStyle(new chimewerk::ChimewerkStyle);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication application(argc, argv);
    // A menu takes no choice for so long, lest the click that opens it choose.
    QApplication::setDoubleClickInterval(0);
    return RUN_ALL_TESTS();
}
