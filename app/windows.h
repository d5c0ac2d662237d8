// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>

namespace chimewerk {

class AppDelegate;

/// A window of the program, initially hidden. Closing it only hides it. Main thread only.
class Window {
public:
    virtual ~Window() = default;

    /// Shows the window as the user left it, brings it to the front and gives it the
    /// keyboard focus.
    virtual void showWindow() = 0;
};

/// Makes the program's windows. Main thread only.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;

    // The delegate must outlive the windows.

    /// Makes the window that configures the events.
    virtual std::unique_ptr<Window> makeDashboard(AppDelegate& delegate) = 0;
    virtual std::unique_ptr<Window> makeHelpWindow(AppDelegate& delegate) = 0;
    /// Makes the question whether to listen with the microphone. `answered` is called when the user
    /// chooses an answer, and not if the question is closed without one.
    virtual std::unique_ptr<Window> makeMicrophoneQuestion(
        std::function<void(bool allowed)> answered) = 0;
};

}  // namespace chimewerk
