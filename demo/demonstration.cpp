// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "demo/demonstration.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <utility>

#include "tools/process/shell.h"

namespace chimewerk {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

// An idle sink plays exact zeros; this is -60 dBFS.
constexpr float kThreshold = 0.001F;
constexpr auto kQuiet = 1s;
constexpr const char* kRecordingFile = "demo-recording.wav";

double decibels(float peak) {
    return 20.0 * std::log10(static_cast<double>(peak));
}

void printRow(const DemoRow& row, const std::string& result) {
    std::printf("%-20s %-30s %s\n", row.event, result.c_str(), row.what);
    std::fflush(stdout);
}

std::string heardText(milliseconds delay, float peak) {
    char text[64];
    std::snprintf(text, sizeof text, "heard after %4lld ms, %5.1f dBFS",
                  static_cast<long long>(delay.count()), decibels(peak));
    return text;
}

/// Returns the factor for all deadlines, for a program that runs slowly under another tool.
int patience() {
    const char* const wanted = std::getenv("DEMO_PATIENCE");
    return wanted == nullptr ? 1 : std::max(std::atoi(wanted), 1);
}

bool fail(const std::string& reason) {
    std::printf("%s\n", reason.c_str());
    return false;
}

}  // namespace

bool Demonstration::run() {
    if (!recorder_.start()) {
        return fail("There is no sink to record.");
    }
    if (!prepare() || !startProgram()) {
        return false;
    }
    // A failed row does not stop the others.
    const auto failed =
        std::count_if(rows_.begin(), rows_.end(), [&](const DemoRow& row) { return !show(row); });
    const bool inspected = inspect();
    const bool stopped = stopProgram();
    const bool written = writeRecording();
    return failed == 0 && inspected && stopped && written;
}

/// Writes the user's settings file: every event shown is switched on.
bool Demonstration::writeSettings() const {
    const char* const configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome == nullptr) {
        return fail("This is no private session: there is no XDG_CONFIG_HOME.");
    }
    const auto folder = std::filesystem::path(configHome) / "chimewerk";
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    std::ofstream settings(folder / "settings.json");
    const char* separator =
        R"({"ChimewerkMicrophoneAllowed": true, "ChimewerkStarted": true, "ChimewerkEvents": {)";
    for (const DemoRow& row : rows_) {
        settings << std::exchange(separator, ", ") << '"' << row.event << R"(": {"enabled": true})";
    }
    settings << '}';
    // Selects another theme than the factory's.
    if (const char* const theme = std::getenv("DEMO_THEME"); theme != nullptr) {
        settings << R"(, "ChimewerkTheme": ")" << theme << '"';
    }
    settings << "}\n";
    return settings.flush() ? true : fail("The settings cannot be written.");
}

bool Demonstration::prepare() {
    return writeSettings() && std::all_of(rows_.begin(), rows_.end(), [](const DemoRow& row) {
               return !outputOfShell(row.obstacle).empty() || runShell(row.preparation) == 0 ||
                      fail(std::string("The preparation of ") + row.event + " failed.");
           });
}

bool Demonstration::startProgram() {
    running_ =
        std::make_unique<ChildProcess>(std::vector{program_}, ChildProcess::Output::inherited);
    // It is ready once it has connected to the audio server.
    const std::string ready =
        "pactl list clients 2>/dev/null | grep -q 'application.name = \"Chimewerk\"'";
    const auto deadline = steady_clock::now() + 20s * patience();
    while (runShell(ready) != 0) {
        if (const auto status = running_->waitFor(50ms)) {
            return fail("The program ended with status " + std::to_string(*status) +
                        " before it was ready.");
        }
        if (steady_clock::now() > deadline) {
            return fail("The program did not become ready.");
        }
    }
    return true;
}

bool Demonstration::waitForQuiet() {
    const auto deadline = steady_clock::now() + 15s;
    auto quietSince = steady_clock::now();
    while (recorder_.waitUntilRecorded(quietSince + kQuiet)) {
        const auto sound = recorder_.firstSoundAfter(quietSince, kThreshold);
        if (!sound || *sound >= quietSince + kQuiet) {
            return true;
        }
        if (steady_clock::now() > deadline) {
            return false;
        }
        quietSince = std::max(steady_clock::now(), *sound);
    }
    return false;
}

bool Demonstration::show(const DemoRow& row) {
    if (const std::string obstacle = outputOfShell(row.obstacle); !obstacle.empty()) {
        printRow(row, "skipped: " + obstacle);
        return true;
    }
    if (!waitForQuiet()) {
        printRow(row, "NOT SHOWN: it was never quiet");
        return false;
    }
    const auto deadline = row.deadline * patience();
    const SteadyTime begun = steady_clock::now();
    ChildProcess signal({"sh", "-c", row.signal}, ChildProcess::Output::inherited);
    const auto heard = recorder_.waitForSound(begun, kThreshold, begun + deadline);
    if (const auto status = signal.waitFor(deadline); status != 0) {
        printRow(row, "NOT SHOWN: the signal failed");
        return false;
    }
    if (!heard) {
        printRow(row, "NOT HEARD within " + std::to_string(deadline.count()) + " ms");
        return false;
    }
    heard_ += row.event + std::string(" ");
    const SteadyTime end = *heard + 500ms;
    const bool whole = recorder_.waitUntilRecorded(end);
    printRow(row, heardText(std::chrono::round<milliseconds>(*heard - begun),
                            recorder_.peakBetween(*heard, end)));
    return whole;
}

/// Runs the command in $DEMO_AT_THE_END, if there is one, while the program still runs.
bool Demonstration::inspect() const {
    const char* const command = std::getenv("DEMO_AT_THE_END");
    if (command == nullptr) {
        return true;
    }
    // Event ids need no escaping.
    return runShell("export DEMO_HEARD='" + heard_ + "'\n" + command) == 0 ||
           fail("The command at the end failed.");
}

bool Demonstration::stopProgram() {
    running_->terminate();
    const auto status = running_->waitFor(10s * patience());
    if (!status) {
        return fail("The program did not end when it was asked to.");
    }
    return *status == 0 || fail("The program ended with status " + std::to_string(*status) + ".");
}

bool Demonstration::writeRecording() {
    if (!recorder_.writeWav(kRecordingFile)) {
        return fail(std::string(kRecordingFile) + " could not be written.");
    }
    std::printf("The recording is in %s.\n", kRecordingFile);
    return true;
}

}  // namespace chimewerk
