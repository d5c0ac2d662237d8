// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/qt_program.h"

#include <unistd.h>

#include <QByteArray>
#include <QOpenGLContext>
#include <QSessionManager>
#include <QString>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "ui/toolkit/chimewerk_style.h"
#include "ui/toolkit/painted_icon.h"

namespace chimewerk {

namespace {

constexpr const char* kActivationToken = "XDG_ACTIVATION_TOKEN";

/// Returns the toolkit's platforms in its own order, and last the one that needs no display:
/// without that, the toolkit ends a program that finds no display.
QByteArray platforms() {
    const bool wayland =
        qgetenv("XDG_SESSION_TYPE") == "wayland" && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const bool gnome = qgetenv("XDG_CURRENT_DESKTOP").contains("GNOME");
    return wayland && !gnome ? "wayland;xcb;offscreen" : "xcb;wayland;offscreen";
}

/// Sets a variable of the environment, unless it is set already, for as long as the object lives.
class TemporaryVariable {
public:
    TemporaryVariable(const char* name, const QByteArray& value)
        : name_(name), isOurs_(qEnvironmentVariableIsEmpty(name)) {
        if (isOurs_) {
            qputenv(name_, value);
        }
    }
    TemporaryVariable(const TemporaryVariable&) = delete;
    TemporaryVariable& operator=(const TemporaryVariable&) = delete;
    ~TemporaryVariable() {
        if (isOurs_) {
            qunsetenv(name_);
        }
    }

private:
    const char* const name_;
    const bool isOurs_;
};

/// Hides the toolkit's messages, except the one before it ends the program.
void dropMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

std::function<void()> jobBeforeSuddenEnd;
bool isQuitting = false;

void runJobBeforeSuddenEnd() {
    if (jobBeforeSuddenEnd) {
        jobBeforeSuddenEnd();
        // Other threads still run, so nothing may be destroyed.
        _exit(EXIT_FAILURE);
    }
}

}  // namespace

QtProgram::QtProgram(int& argumentCount, char** arguments, const char* id) {
    if (qEnvironmentVariableIsEmpty("QT_LOGGING_RULES")) {
        qInstallMessageHandler(dropMessage);
    }
    // Programs that this one starts do not inherit the settings of our toolkit.
    const TemporaryVariable platform("QT_QPA_PLATFORM", platforms());
    // Nothing is drawn with OpenGL, whose libraries weigh more than all the rest.
    const TemporaryVariable openGl("QT_XCB_GL_INTEGRATION", "none");
    // Reserves a place in the environment while no other thread may be reading it.
    if (qEnvironmentVariableIsEmpty(kActivationToken)) {
        qputenv(kActivationToken, "");
    }
    // Before the application, so that the desktop's own style is not even loaded.
    QApplication::setStyle(new ChimewerkStyle);
    application_.emplace(argumentCount, arguments);
    if (QGuiApplication::platformName() == "xcb") {
        // Makes the toolkit read the second variable now, not with the first window.
        QOpenGLContext::supportsThreadedOpenGL();
    }
    QApplication::setApplicationName(QStringLiteral("chimewerk"));
    // No display name: the toolkit would append it to the windows' titles.
    QApplication::setDesktopFileName(QString::fromLatin1(id));
    QApplication::setWindowIcon(programIcon());
    // The program keeps running in the tray.
    QApplication::setQuitOnLastWindowClosed(false);
    // Desktops start the program by its autostart entry; restored, it would start twice.
    QObject::connect(
        &*application_, &QGuiApplication::saveStateRequest,
        [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); });
}

QtProgram::~QtProgram() {
    jobBeforeSuddenEnd = nullptr;
}

void QtProgram::waitUntil(const std::function<bool()>& isReached) {
    while (!isQuitting && !isReached()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void QtProgram::run(const std::function<bool()>& isStarted) {
    // exec() first asks the bus for a screen reader, which takes as long as the rest of the start.
    waitUntil(isStarted);
    if (!isQuitting) {
        QApplication::exec();
    }
}

void QtProgram::quit() {
    isQuitting = true;
    QApplication::quit();
}

void QtProgram::expectActivation(const std::string& token) {
    if (!token.empty()) {
        // The toolkit takes the token from the environment only, and removes it there. Its place is
        // reserved, so this replaces one entry and does not move the list that others may read.
        qputenv(kActivationToken, QByteArray::fromStdString(token));
    }
}

void QtProgram::beforeSuddenEnd(std::function<void()> job) {
    jobBeforeSuddenEnd = std::move(job);
    std::atexit(runJobBeforeSuddenEnd);
}

void QtProgram::attach(int descriptor, std::function<void()> dispatch) {
    notifier_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [dispatch = std::move(dispatch)] { dispatch(); });
}

}  // namespace chimewerk
