// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QWidget>
#include <functional>

#include "ui/rules/theme_dialog_texts.h"

namespace chimewerk {

// The questions about custom themes. Each function opens a dialog that blocks its window
// and returns at once. The callback is called if the user confirms, not if the user cancels or
// `parent` is destroyed.

/// Asks for a name. The field first contains `value`, and shows `placeholder` while it is empty.
void askForName(QWidget& parent, const DialogTexts& texts, const QString& value,
                const QString& placeholder, std::function<void(const QString& name)> onConfirmed);

/// Asks whether to destroy something.
void askToDestroy(QWidget& parent, const DialogTexts& texts, std::function<void()> onConfirmed);

}  // namespace chimewerk
