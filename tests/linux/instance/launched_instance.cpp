// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A program for the tests that tries to be the only instance of its session: launched_instance ID
// LOG [ACTION]. Appends its outcome and each request it receives to LOG, one per line.
#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/instance/single_instance.h"

int main(int count, char** arguments) {
    using namespace chimewerk;
    if (count < 3) {
        return 2;
    }
    const FileDescriptor log(open(arguments[2], O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
    const auto writeLine = [&log](const std::string& line) {
        const std::string whole = line + "\n";
        static_cast<void>(write(log.get(), whole.data(), whole.size()) == 0);
    };
    EpollMainQueue queue;
    SingleInstance instance(
        queue, arguments[1],
        {.onActivate = [&](const std::string& token) { writeLine("activate " + token); },
         .onAction =
             [&](const std::string& action, const std::string& token) {
                 writeLine(action + " " + token);
                 if (action == SingleInstance::kQuit) {
                     queue.quit();
                 }
             }});
    switch (instance.claim(LaunchRequest::ofThisProcess(count > 3 ? arguments[3] : ""))) {
        case SingleInstance::Outcome::alreadyRunning:
            writeLine("already");
            return 0;
        case SingleInstance::Outcome::notAnswering:
            writeLine("not answering");
            return 1;
        case SingleInstance::Outcome::first:
            writeLine("first");
            break;
        case SingleInstance::Outcome::noBus:
            writeLine("no bus");
            break;
    }
    queue.run();
    writeLine("ended");
    return 0;
}
