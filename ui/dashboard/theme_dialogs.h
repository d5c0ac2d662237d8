#pragma once

#include <QString>
#include <QWidget>
#include <functional>

#include "ui/rules/theme_dialog_texts.h"

namespace chimewerk {

/// The questions about custom themes. Each opens a dialog that is modal to the program and returns at once;
/// the callback comes when the user has confirmed, and never when the user has cancelled or `parent` has
/// gone.

/// Asks for a name, beginning with `value`; `placeholder` shows while the field is empty.
void askForName(QWidget& parent, const DialogTexts& texts, const QString& value,
                const QString& placeholder, std::function<void(const QString& name)> onConfirmed);

/// Asks whether to destroy something.
void askToDestroy(QWidget& parent, const DialogTexts& texts, std::function<void()> onConfirmed);

}  // namespace chimewerk
