#pragma once

#include <QFont>
#include <QString>
#include <QWidget>
#include <memory>

#include "app/windows.h"

class QLabel;
class QTextDocument;

namespace chimewerk {

struct ColorScheme;

/// The guide's window: a coloured header with the name of the program, and below it a text that scrolls. It
/// is made hidden. Closing hides it, and it keeps its place in the text for the next time. Light and dark
/// follow the desktop.
class HelpWindowController final : public Window {
public:
    HelpWindowController();

    /// Shows the window, in front of the others if the desktop lets it.
    void showWindow() override;

    QWidget& window() { return *window_; }

private:
    void buildUI();
    /// Fills an empty document with the guide.
    static void buildContent(QTextDocument& document, const ColorScheme& colors);
    /// A label of the header: white, `alpha` from 0 to 1, on one line.
    static QLabel* heroLabel(const QString& text, int size, QFont::Weight weight,
                             double alpha = 1.0);

    const std::unique_ptr<QWidget> window_;
};

}  // namespace chimewerk
