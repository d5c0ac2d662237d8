// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/theme_dialogs.h"

#include <QLineEdit>
#include <utility>

#include "ui/controls/fonts.h"
#include "ui/controls/message_dialog.h"
#include "ui/toolkit/chimewerk_style.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

constexpr int kFieldWidth = 220;
constexpr int kFieldHeight = 24;

/// Returns a dialog that asks this, and deletes itself when closed.
MessageDialog* makeQuestion(QWidget& parent, const DialogTexts& texts) {
    auto* const question =
        new MessageDialog(parent, {.message = QString::fromStdString(texts.message),
                                   .informative = worded(texts.informative)});
    question->setAttribute(Qt::WA_DeleteOnClose);
    return question;
}

}  // namespace

void askForName(QWidget& parent, const DialogTexts& texts, const QString& value,
                const QString& placeholder, std::function<void(const QString& name)> onConfirmed) {
    MessageDialog* const question = makeQuestion(parent, texts);
    auto* const field = new QLineEdit(value);
    field->setFixedSize(kFieldWidth, kFieldHeight);
    field->setFont(systemFont(13));
    field->setPlaceholderText(placeholder);
    field->setAccessibleName(worded(texts.informative));
    field->selectAll();
    question->insert(field);
    question->addButton(worded(texts.confirm), QDialogButtonBox::AcceptRole);
    question->addButton(worded(kCancelTitle), QDialogButtonBox::RejectRole);
    QObject::connect(question, &QDialog::accepted, &parent,
                     [field, confirmed = std::move(onConfirmed)] { confirmed(field->text()); });
    question->show();
    field->setFocus();
}

void askToDestroy(QWidget& parent, const DialogTexts& texts, std::function<void()> onConfirmed) {
    MessageDialog* const question = makeQuestion(parent, texts);
    // The first button is what Enter does, and it destroys nothing.
    QPushButton* const cancel =
        question->addButton(worded(kCancelTitle), QDialogButtonBox::RejectRole);
    question->addButton(worded(texts.confirm), QDialogButtonBox::AcceptRole)
        ->setProperty(kDestructive, true);
    QObject::connect(question, &QDialog::accepted, &parent,
                     [confirmed = std::move(onConfirmed)] { confirmed(); });
    question->show();
    cancel->setFocus();
}

}  // namespace chimewerk
