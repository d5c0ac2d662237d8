// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/process/shell.h"

#include <cstdio>
#include <memory>
#include <optional>

#include "tools/process/child_process.h"

namespace chimewerk {

int runShell(const std::string& command) {
    ChildProcess shell({"sh", "-c", command}, ChildProcess::Output::inherited);
    std::optional<int> status;
    while (!status) {
        status = shell.waitFor(std::chrono::hours(1));
    }
    return *status;
}

std::string outputOfShell(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "re"), pclose);
    std::string output;
    for (int next = pipe ? fgetc(pipe.get()) : EOF; next != EOF; next = fgetc(pipe.get())) {
        output += static_cast<char>(next);
    }
    while (output.ends_with('\n')) {
        output.pop_back();
    }
    return output;
}

}  // namespace chimewerk
