#include "demo/rows.h"

namespace chimewerk {

using namespace std::chrono_literals;

std::span<const DemoRow> demoRows() {
    static constexpr DemoRow kRows[] = {
        {.event = "trash_add",
         .what = "a file is put into the trash",
         .signal = "gio trash \"$HOME/chimewerk-demo\"",
         .deadline = 3s,
         .preparation = "echo demonstration >\"$HOME/chimewerk-demo\""},
        // Emptying by name: to empty the whole trash would reach the user's trash on other volumes too.
        {.event = "trash_empty",
         .what = "the trash is emptied",
         .signal = "gio remove trash:///chimewerk-demo",
         .deadline = 3s},
    };
    return kRows;
}

}  // namespace chimewerk
