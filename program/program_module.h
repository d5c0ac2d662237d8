// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "app/options/command_line.h"
#include "app/status_item.h"
#include "platform/clock.h"

namespace chimewerk {

class EpollMainQueue;
class QtProgram;
class RemoteControlService;

/// How long a quit may take. The next launch waits a little longer for the name.
constexpr Seconds kQuitPatience{4};

/// What later launches ask of the running program.
struct LaunchHandlers {
    /// The program was launched again.
    std::function<void()> reopen;
    /// One of the actions of SingleInstance is asked for.
    std::function<void(const std::string& action)> carryOut;
};

/// What there is when the icon is in the tray. All of it outlives the program.
struct ProgramStart {
    EpollMainQueue& queue;
    QtProgram& toolkit;
    StatusItem& statusItem;
    RemoteControlService& service;
    /// Set before the queue runs.
    LaunchHandlers& handlers;
    Command command;
    /// What to do first, an action of SingleInstance; may be empty.
    std::string action;
};

/// All of the program that its icon in the tray does not need. It lies in a module, because what it
/// links takes longer to load than everything until the icon appears. Main thread only.
class ProgramModule {
public:
    virtual ~ProgramModule() = default;

    /// Makes the parts and runs the main loop.
    virtual void run(const ProgramStart& start) = 0;
    /// Asks the running program to carry this out, and prints the answer. Returns the exit status.
    virtual int request(const CommandLine& line) = 0;
    /// Stores the user's answer for the next start.
    virtual void storeMicrophoneAnswer(EpollMainQueue& queue, bool allowed) = 0;
    /// Tells the user that the running program does not answer.
    virtual void reportNotAnswering() = 0;
};

/// The type of the module's only function, which returns the one object, never null. Its name
/// contains the program's version.
using ProgramModuleFunction = ProgramModule* (*)();

}  // namespace chimewerk
