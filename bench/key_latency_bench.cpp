// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the time from a key press to the first sample at the sink, for each named program in
// turn. Needs a private session; `key_latency` beside this file starts it.
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tools/process/child_process.h"
#include "tools/recorder/sink_recorder.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// An idle sink plays exact zeros.
constexpr float kAudible = 0.002F;
constexpr int kRounds = 3;
constexpr int kPressesPerRound = 20;
constexpr auto kUntilReady = 3s;
constexpr auto kQuiet = 400ms;
/// A program that was not heard this often in a row will not be heard at all.
constexpr int kMostUnheard = 5;

/// A display with a window that has the keyboard focus: without one, some programs receive no keys.
class Keyboard {
public:
    Keyboard() {
        const xcb_screen_t* const screen =
            xcb_setup_roots_iterator(xcb_get_setup(server_.get())).data;
        const xcb_window_t window = xcb_generate_id(server_.get());
        xcb_create_window(server_.get(), XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 200, 100,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(server_.get(), window);
        xcb_flush(server_.get());
        std::this_thread::sleep_for(500ms);
        xcb_set_input_focus(server_.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        xcb_flush(server_.get());
    }

    /// Presses and releases the key "a".
    void press() {
        constexpr std::uint8_t kKey = 38;
        send(XCB_KEY_PRESS, kKey);
        std::this_thread::sleep_for(30ms);
        send(XCB_KEY_RELEASE, kKey);
    }

private:
    struct Disconnect {
        void operator()(xcb_connection_t* server) const { xcb_disconnect(server); }
    };

    void send(std::uint8_t type, std::uint8_t key) {
        xcb_test_fake_input(server_.get(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        // A server that has nothing to answer keeps the event from programs that record.
        std::free(
            xcb_get_input_focus_reply(server_.get(), xcb_get_input_focus(server_.get()), nullptr));
    }

    std::unique_ptr<xcb_connection_t, Disconnect> server_{xcb_connect(nullptr, nullptr)};
};

struct Program {
    std::string name;
    std::vector<std::string> command;
    std::vector<double> milliseconds = {};
    std::vector<double> firsts = {};
    int unheard = 0;
};

double quantile(std::vector<double> values, double q) {
    std::sort(values.begin(), values.end());
    return values.empty()
               ? 0
               : values[static_cast<std::size_t>(q * static_cast<double>(values.size() - 1))];
}

/// Returns whether the key was heard.
bool press(Keyboard& keyboard, SinkRecorder& recorder, Program& program,
           std::vector<double>& into) {
    const auto pressed = steady_clock::now();
    keyboard.press();
    if (const auto heard = recorder.waitForSound(pressed, kAudible, pressed + 1s)) {
        into.push_back(Milliseconds(*heard - pressed).count());
        return true;
    }
    ++program.unheard;
    return false;
}

void measure(Keyboard& keyboard, SinkRecorder& recorder, Program& program) {
    const ChildProcess running(program.command);
    std::this_thread::sleep_for(kUntilReady);
    int unheard = press(keyboard, recorder, program, program.firsts) ? 0 : 1;
    for (int i = 0; i < kPressesPerRound && unheard < kMostUnheard; ++i) {
        std::this_thread::sleep_for(kQuiet + std::chrono::milliseconds(i * 7 % 30));
        unheard = press(keyboard, recorder, program, program.milliseconds) ? 0 : unheard + 1;
    }
}

int run(std::vector<Program> programs) {
    Keyboard keyboard;
    for (int round = 0; round < kRounds; ++round) {
        for (Program& program : programs) {
            SinkRecorder recorder("speaker");
            if (!recorder.start()) {
                std::fprintf(stderr, "no recording of the sink\n");
                return 1;
            }
            measure(keyboard, recorder, program);
        }
    }
    std::printf("%-44s %9s %9s %9s %8s\n", "", "median", "90 %", "first", "unheard");
    for (const Program& program : programs) {
        std::printf("%-44s %6.1f ms %6.1f ms %6.1f ms %8d\n", program.name.c_str(),
                    quantile(program.milliseconds, 0.5), quantile(program.milliseconds, 0.9),
                    quantile(program.firsts, 0.5), program.unheard);
    }
    return 0;
}

Program parse(const char* text) {
    Program program{.name = text, .command = {}};
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        program.command.push_back(word);
    }
    return program;
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    std::vector<chimewerk::Program> programs;
    std::transform(argv + 1, argv + argc, std::back_inserter(programs), chimewerk::parse);
    return chimewerk::run(std::move(programs));
}
