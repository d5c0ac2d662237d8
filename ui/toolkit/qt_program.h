// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace chimewerk {

/// The toolkit and its main loop. Create one per process, before any other part of `ui/`, and
/// destroy it last. Without a display the windows are painted into memory and everything else
/// works. Main thread only.
class QtProgram {
public:
    /// The arguments are those of `main()` and must outlive the object; the toolkit
    /// removes its own from them. `id` is the name that desktops know the program by, such
    /// as "org.example.Program".
    QtProgram(int& argumentCount, char** arguments, const char* id);
    QtProgram(const QtProgram&) = delete;
    QtProgram& operator=(const QtProgram&) = delete;
    ~QtProgram();

    /// Calls `dispatch` when `descriptor` becomes readable; `dispatch` must drain it. Call once.
    void attach(int descriptor, std::function<void()> dispatch);

    /// Handles events until `isReached` says so, or until `quit()`.
    static void waitUntil(const std::function<bool()>& isReached);
    /// Runs until `quit()`, or until the desktop ends the program. `isStarted` says whether the start
    /// is complete.
    void run(const std::function<bool()>& isStarted);
    /// Makes `run()` return after the current event.
    static void quit();

    /// `token` is the desktop's activation token for the next window; empty if there is none.
    /// Other threads may read the environment at the same time, but must not change it.
    static void expectActivation(const std::string& token);

    /// Calls `job` before the process ends because the display went away: the toolkit calls
    /// exit() then.
    void beforeSuddenEnd(std::function<void()> job);

private:
    std::optional<QApplication> application_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace chimewerk
