// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/process_status.h"

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

namespace chimewerk {

namespace {

std::string readFile(pid_t number, const char* name) {
    std::ifstream file("/proc/" + std::to_string(number) + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

BootTime tick() {
    static const BootTime length =
        std::chrono::microseconds(std::chrono::seconds(1)) / sysconf(_SC_CLK_TCK);
    return length;
}

std::string fileName(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

}  // namespace

std::optional<ProcessStatus> readProcessStatus(pid_t number) {
    // The name, which may contain anything, is in brackets.
    const std::string text = readFile(number, "/stat");
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return std::nullopt;
    }
    std::istringstream fields(text.substr(close + 1));
    char state = 0;
    ProcessStatus status{.id = {.number = number}, .name = text.substr(open + 1, close - open - 1)};
    fields >> state >> status.parent;
    std::string skipped;
    constexpr int kBetweenParentAndStart = 17;
    for (int i = 0; i < kBetweenParentAndStart; ++i) {
        fields >> skipped;
    }
    std::int64_t ticks = 0;
    if (!(fields >> ticks) || state == 'Z' || state == 'X') {
        return std::nullopt;
    }
    status.id.start = ticks * tick();
    return status;
}

bool isRunning(const ProcessId& process) {
    const auto status = readProcessStatus(process.number);
    return status && status->id == process;
}

std::string readControlGroups(pid_t number) {
    return readFile(number, "/cgroup");
}

std::vector<std::string> readArguments(pid_t number) {
    std::istringstream text(readFile(number, "/cmdline"));
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(text, argument, '\0');) {
        arguments.push_back(argument);
    }
    return arguments;
}

std::vector<std::string> readPrograms(pid_t number) {
    std::vector<std::string> programs;
    std::error_code error;
    const auto program =
        std::filesystem::read_symlink("/proc/" + std::to_string(number) + "/exe", error);
    if (!error) {
        programs.push_back(program.filename());
    }
    const auto arguments = readArguments(number);
    if (!arguments.empty()) {
        programs.push_back(fileName(arguments[0]));
    }
    if (arguments.size() > 1 && arguments[1].starts_with('/')) {
        programs.push_back(fileName(arguments[1]));
    }
    return programs;
}

BootTime bootTimeNow() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    const BootTime now = std::chrono::duration_cast<BootTime>(
        std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
    return now - now % tick();
}

}  // namespace chimewerk
