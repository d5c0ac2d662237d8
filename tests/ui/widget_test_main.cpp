#include <gtest/gtest.h>

#include <QApplication>

/// Runs the tests of widgets, which need an application around them.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
