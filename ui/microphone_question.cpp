// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/microphone_question.h"

#include <QApplication>

#include "ui/rules/microphone_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

MicrophoneQuestion::MicrophoneQuestion(QWidget* parent, const ColorScheme& colors,
                                       const std::function<void(bool allowed)>& onAnswer)
    : dialog_(new MessageDialog(
          parent, colors,
          {.message = worded(microphone_texts::kQuestion),
           .informative = worded(microphone_texts::kExplanation),
           .sign = QString::fromUtf8(
               microphone_texts::kQuestionSign.data(),
               static_cast<qsizetype>(microphone_texts::kQuestionSign.size()))})) {
    const auto offer = [&](std::string_view title, QDialogButtonBox::ButtonRole role, bool allow) {
        QPushButton* const button = dialog_->addButton(worded(title), role);
        // Queued, so that the answer may destroy the question.
        QObject::connect(
            button, &QPushButton::clicked, qApp, [onAnswer, allow] { onAnswer(allow); },
            Qt::QueuedConnection);
    };
    offer(microphone_texts::kAllow, QDialogButtonBox::AcceptRole, true);
    offer(microphone_texts::kDeny, QDialogButtonBox::RejectRole, false);
    if (parent == nullptr) {
        dialog_->setAttribute(Qt::WA_ShowWithoutActivating);
    }
}

MicrophoneQuestion::~MicrophoneQuestion() {
    delete dialog_.data();
}

void MicrophoneQuestion::showWindow() {
    if (!dialog_.isNull()) {
        dialog_->show();
    }
}

}  // namespace chimewerk
