// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/microphone_question.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/widget_input.h"
#include "ui/rules/microphone_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {
namespace {

TEST(TheMicrophoneQuestion, PassesOnAnAnswerAndNothingWhenItIsClosed) {
    std::string answers;
    std::unique_ptr<MicrophoneQuestion> question;
    QWidget window;
    window.show();
    const auto ask = [&](QWidget* parent) {
        question =
            std::make_unique<MicrophoneQuestion>(parent, ColorScheme::light(), [&](bool allowed) {
                answers += allowed ? "yes " : "no ";
                question = nullptr;
            });
        question->showWindow();
        ASSERT_TRUE(dialogAppears<MessageDialog>());
    };
    const auto dialogGoes = [] {
        return becomesTrue([] { return dialog<MessageDialog>() == nullptr; });
    };
    ask(&window);
    click(named<QPushButton>(*dialog<MessageDialog>(), worded(microphone_texts::kAllow)));
    EXPECT_TRUE(dialogGoes());
    ask(&window);
    click(named<QPushButton>(*dialog<MessageDialog>(), worded(microphone_texts::kDeny)));
    EXPECT_TRUE(dialogGoes());
    ask(&window);
    press(Qt::Key_Escape);
    EXPECT_TRUE(dialogGoes());
    EXPECT_EQ(answers, "yes no ");
}

}  // namespace
}  // namespace chimewerk
