#pragma once

#include <QApplication>
#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace chimewerk {

/// The toolkit and its main loop. One per process, made before any other part of `ui/` and destroyed after
/// them. Where no display can be reached the windows are shown to nobody, and all else works. Main thread
/// only.
class QtProgram {
public:
    /// `arguments` as those of `main()`, which outlive the object; the toolkit takes out those that are for
    /// it. `id` is the program's name by which a desktop knows it, such as "org.example.Program".
    QtProgram(int& argumentCount, char** arguments, const char* id);

    /// Runs `dispatch` whenever `descriptor` is readable, which it is to cease to be by that. Once.
    void attach(int descriptor, std::function<void()> dispatch);

    /// Runs until `quit()`, or until the desktop ends the program.
    void run() { QApplication::exec(); }
    /// Makes `run()` return after the present event.
    void quit() { QApplication::quit(); }

private:
    std::optional<QApplication> application_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace chimewerk
