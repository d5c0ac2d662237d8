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
    QtProgram(const QtProgram&) = delete;
    QtProgram& operator=(const QtProgram&) = delete;
    ~QtProgram();

    /// Runs `dispatch` whenever `descriptor` is readable, which it is to cease to be by that. Once.
    void attach(int descriptor, std::function<void()> dispatch);

    /// Runs until `quit()`, or until the desktop ends the program.
    void run() { QApplication::exec(); }
    /// Makes `run()` return after the present event.
    static void quit() { QApplication::quit(); }

    /// The next window that is shown comes to the front by this leave of the desktop's; empty for none.
    static void expectActivation(const std::string& token);

    /// The toolkit ends the process on the spot when the display goes away; `job` is run before.
    void beforeSuddenEnd(std::function<void()> job);

private:
    std::optional<QApplication> application_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace chimewerk
