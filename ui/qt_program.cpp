#include "ui/qt_program.h"

#include <QByteArray>
#include <QString>
#include <utility>

namespace chimewerk {

namespace {

/// The toolkit's ways to a display, in the order in which it would try them, and one that needs none: without
/// it the toolkit ends a program that finds no display.
QByteArray platforms() {
    const bool wayland =
        qgetenv("XDG_SESSION_TYPE") == "wayland" && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const bool gnome = qgetenv("XDG_CURRENT_DESKTOP").contains("GNOME");
    return wayland && !gnome ? "wayland;xcb;offscreen" : "xcb;wayland;offscreen";
}

void setUnlessGiven(const char* variable, const QByteArray& value) {
    if (qEnvironmentVariableIsEmpty(variable)) {
        qputenv(variable, value);
    }
}

}  // namespace

QtProgram::QtProgram(int& argumentCount, char** arguments, const char* id) {
    setUnlessGiven("QT_QPA_PLATFORM", platforms());
    // Nothing is drawn with OpenGL, whose libraries weigh more than all the rest.
    setUnlessGiven("QT_XCB_GL_INTEGRATION", "none");
    application_.emplace(argumentCount, arguments);
    QApplication::setApplicationName(QStringLiteral("chimewerk"));
    QApplication::setApplicationDisplayName(QStringLiteral("Chimewerk"));
    QApplication::setDesktopFileName(QString::fromLatin1(id));
    // The program lives in the tray.
    QApplication::setQuitOnLastWindowClosed(false);
}

void QtProgram::attach(int descriptor, std::function<void()> dispatch) {
    notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [dispatch = std::move(dispatch)] { dispatch(); });
}

}  // namespace chimewerk
