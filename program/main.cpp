// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The start: reads the options, keeps the program to one instance, puts the icon into the tray, and
// only then loads all the rest.
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>

#include "app/options/command_line.h"
#include "linux/base/core_dumps.h"
#include "linux/base/descriptor_limit.h"
#include "linux/base/epoll_main_queue.h"
#include "linux/base/module.h"
#include "linux/base/program_folders.h"
#include "linux/base/termination_signals.h"
#include "linux/instance/remote_control_service.h"
#include "linux/instance/single_instance.h"
#include "program/program_module.h"
#include "ui/toolkit/qt_program.h"
#include "ui/tray/qt_status_item.h"

namespace chimewerk {
namespace {

/// Returns the action to ask of an instance that runs already; empty to show its dashboard.
std::string actionFor(Command command) {
    switch (command) {
        case Command::openDashboard:
            return SingleInstance::kOpenDashboard;
        case Command::openHelp:
            return SingleInstance::kOpenHelp;
        case Command::allowMicrophone:
            return SingleInstance::kAllowMicrophone;
        case Command::denyMicrophone:
            return SingleInstance::kDenyMicrophone;
        case Command::quit:
            return SingleInstance::kQuit;
        case Command::background:
            return SingleInstance::kKeepQuiet;
        default:
            return {};
    }
}

/// Loads the rest of the program, calls `job` with it and returns the exit status.
int withProgram(const std::function<int(ProgramModule& program)>& job) {
    Module module(findProgramFolders().modules + "/chimewerk-program.so", Module::Symbols::shared);
    const auto entry = module.function<ProgramModuleFunction>(CHIMEWERK_PROGRAM_FUNCTION_NAME);
    if (entry == nullptr) {
        std::fprintf(stderr, "chimewerk: a part of the program is missing: %s\n",
                     module.error().c_str());
        return EXIT_FAILURE;
    }
    return job(*entry());
}

/// Returns the callbacks for later launches. `handlers` must be set before the queue runs.
SingleInstance::Callbacks laterLaunches(const LaunchHandlers& handlers,
                                        RemoteControlService& service) {
    return {.onActivate =
                [&handlers](const std::string& token) {
                    QtProgram::expectActivation(token);
                    handlers.reopen();
                },
            .onAction =
                [&handlers](const std::string& action, const std::string& token) {
                    QtProgram::expectActivation(token);
                    handlers.carryOut(action);
                },
            .addInterfaces = [&service](sd_bus* bus,
                                        const std::string& path) { service.addTo(bus, path); }};
}

/// Runs the program. If an instance runs already, passes `command` on to it instead.
int run(int& argumentCount, char** arguments, Command command) {
    forbidCoreDumps();
    // A heap of its own for each of the threads would take 40 KiB more and speed up nothing.
    mallopt(M_ARENA_MAX, 1);
    if (const auto limit = raiseDescriptorLimit(); limit < kNeededDescriptors) {
        std::fprintf(stderr,
                     "chimewerk: needs %lu open files, but only %lu are allowed; see 'ulimit -n'\n",
                     kNeededDescriptors, limit);
        return EXIT_FAILURE;
    }
    EpollMainQueue queue;
    const TerminationSignals signals(queue, kQuitPatience, QtProgram::quit);
    LaunchHandlers handlers;
    RemoteControlService service(queue);
    SingleInstance instance(queue, CHIMEWERK_ID, laterLaunches(handlers, service));
    const std::string action = actionFor(command);
    const auto outcome = instance.claim(LaunchRequest::ofThisProcess(action));
    if (outcome == SingleInstance::Outcome::notAnswering) {
        return withProgram([](ProgramModule& program) {
            program.reportNotAnswering();
            return EXIT_FAILURE;
        });
    }
    if (outcome == SingleInstance::Outcome::alreadyRunning || command == Command::quit) {
        return 0;
    }
    if (command == Command::allowMicrophone || command == Command::denyMicrophone) {
        return withProgram([&queue, command](ProgramModule& program) {
            program.storeMicrophoneAnswer(queue, command == Command::allowMicrophone);
            return 0;
        });
    }

    QtProgram toolkit(argumentCount, arguments, CHIMEWERK_ID);
    QtStatusItem statusItem;
    toolkit.waitUntil([&statusItem] { return statusItem.knowsTray(); });
    toolkit.attach(queue.descriptor(), [&queue] { queue.dispatch(); });
    return withProgram([&](ProgramModule& program) {
        program.run({.queue = queue,
                     .toolkit = toolkit,
                     .statusItem = statusItem,
                     .service = service,
                     .handlers = handlers,
                     .command = command,
                     .action = action});
        return 0;
    });
}

}  // namespace
}  // namespace chimewerk

int main(int argumentCount, char** arguments) {
    const std::span<char* const> options(arguments + 1, arguments + argumentCount);
    const chimewerk::CommandLine line = chimewerk::parseCommandLine(options);
    if (line.command == chimewerk::Command::invalid) {
        std::fprintf(stderr, "chimewerk: %s\n", line.argument.c_str());
        return 2;
    }
    if (line.command == chimewerk::Command::printUsage) {
        std::fputs(chimewerk::usage().c_str(), stdout);
        return 0;
    }
    if (line.command == chimewerk::Command::printVersion) {
        std::puts("chimewerk " CHIMEWERK_VERSION);
        return 0;
    }
    if (chimewerk::isRemoteCommand(line.command)) {
        return chimewerk::withProgram(
            [&line](chimewerk::ProgramModule& program) { return program.request(line); });
    }
    return chimewerk::run(argumentCount, arguments, line.command);
}
