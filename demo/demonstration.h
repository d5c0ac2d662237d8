// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <span>
#include <string>

#include "demo/rows.h"
#include "tools/process/child_process.h"
#include "tools/recorder/sink_recorder.h"

namespace chimewerk {

/// Starts the program, gives the signals of the rows one by one and records what the sink plays.
/// Prints the result of each row.
class Demonstration {
public:
    Demonstration(std::string program, std::span<const DemoRow> rows)
        : program_(std::move(program)), rows_(rows) {}

    /// Returns whether every event that could be shown was heard, and the program started and
    /// ended correctly.
    bool run();

private:
    bool prepare();
    bool writeSettings() const;
    bool startProgram();
    /// Returns false if the row failed.
    bool show(const DemoRow& row);
    bool waitForQuiet();
    bool inspect() const;
    bool stopProgram();
    bool writeRecording();

    const std::string program_;
    const std::span<const DemoRow> rows_;
    SinkRecorder recorder_;
    std::unique_ptr<ChildProcess> running_;
    /// The events heard, each followed by a space.
    std::string heard_;
};

}  // namespace chimewerk
