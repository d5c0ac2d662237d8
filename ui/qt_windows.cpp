#include "ui/qt_windows.h"

#include <QLabel>

#include "ui/look.h"

namespace chimewerk {

namespace {

/// A window that has nothing to show yet.
class EmptyWindow final : public Window {
public:
    explicit EmptyWindow(const char* title) { widget_.setWindowTitle(QString::fromUtf8(title)); }

    void showWindow() override {
        widget_.show();
        widget_.raise();
        widget_.activateWindow();
    }

private:
    QWidget widget_;
};

}  // namespace

std::unique_ptr<Window> QtWindows::makeDashboard(AppDelegate& /*delegate*/) {
    return std::make_unique<EmptyWindow>("Chimewerk — Dashboard");
}

std::unique_ptr<Window> QtWindows::makeHelpWindow() {
    return std::make_unique<EmptyWindow>("Chimewerk — Help & Guide");
}

}  // namespace chimewerk
