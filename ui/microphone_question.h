// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointer>
#include <functional>

#include "app/windows.h"
#include "ui/controls/message_dialog.h"

namespace chimewerk {

/// Asks whether the program may listen for knocks. Closed without an answer, it does not return.
/// Main thread only.
class MicrophoneQuestion final : public Window {
public:
    /// Over `parent`, or alone on the screen in these colours. The parent may be destroyed earlier.
    MicrophoneQuestion(QWidget* parent, const ColorScheme& colors,
                       const std::function<void(bool allowed)>& onAnswer);
    /// May be called from `onAnswer`.
    ~MicrophoneQuestion() override;
    MicrophoneQuestion(const MicrophoneQuestion&) = delete;
    MicrophoneQuestion& operator=(const MicrophoneQuestion&) = delete;

    /// Does not take the keyboard from another program, in which the user may be typing.
    void showWindow() override;

private:
    const QPointer<MessageDialog> dialog_;
};

}  // namespace chimewerk
