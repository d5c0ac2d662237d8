// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/process_status.h"

#include <unistd.h>

#include <charconv>
#include <ctime>
#include <string_view>

#include "linux/base/file_reading.h"
#include "linux/base/text_parts.h"

namespace chimewerk {

namespace {

std::string readFile(pid_t number, const char* name) {
    return readText("/proc/" + std::to_string(number) + name).value_or("");
}

BootTime tick() {
    static const BootTime length =
        std::chrono::microseconds(std::chrono::seconds(1)) / sysconf(_SC_CLK_TCK);
    return length;
}

/// Returns 0 for what is no number.
template <typename Number>
Number numberOf(std::string_view text) {
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
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
    const auto fields = words(std::string_view(text).substr(close + 1));
    constexpr std::size_t kStart = 19;
    if (fields.size() <= kStart || fields[0] == "Z" || fields[0] == "X") {
        return std::nullopt;
    }
    return ProcessStatus{
        .id = {.number = number, .start = numberOf<std::int64_t>(fields[kStart]) * tick()},
        .parent = numberOf<pid_t>(fields[1]),
        .name = text.substr(open + 1, close - open - 1)};
}

bool isRunning(const ProcessId& process) {
    const auto status = readProcessStatus(process.number);
    return status && status->id == process;
}

std::string readControlGroups(pid_t number) {
    return readFile(number, "/cgroup");
}

std::vector<std::string> readArguments(pid_t number) {
    const std::string text = readFile(number, "/cmdline");
    const auto arguments = split(text, '\0');
    return {arguments.begin(), arguments.end()};
}

std::vector<std::string> readPrograms(pid_t number) {
    std::vector<std::string> programs;
    const std::string program = readLink("/proc/" + std::to_string(number) + "/exe");
    if (!program.empty()) {
        programs.push_back(fileName(program));
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
