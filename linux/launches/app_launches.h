// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace chimewerk {

/// Times since the machine was booted.
using BootTime = std::chrono::microseconds;

/// A process, told from others that had its number before by the time of its start.
struct ProcessId {
    /// 0 if the process runs on another machine or is unknown.
    pid_t number = 0;
    BootTime start{0};

    bool operator==(const ProcessId&) const = default;
    bool operator<(const ProcessId& other) const {
        return number != other.number ? number < other.number : start < other.start;
    }
};

/// A process that may be an application just launched, and what is known of it.
struct LaunchCandidate {
    enum class Found { inUnit, byWindow, byBusName };
    enum class Entry { none, hidden, visible };

    Found found = Found::byWindow;
    BootTime moment{0};
    ProcessId process;
    /// The name of its desktop entry, or what comes near to it. May be empty.
    std::string application;
    /// The application's unit that it runs in; empty outside of one.
    std::string unit;
    /// Belongs to the desktop itself.
    bool isPartOfSession = false;
    /// Parent, grandparent and so on.
    std::vector<ProcessId> ancestors;
    /// When the session began whose manager has started it; none if another program has.
    std::optional<BootTime> sessionStart;
    /// The session starts it at each login.
    bool isAutostarted = false;
    Entry entry = Entry::none;
    /// The bus has started it to serve other programs, and it has no window yet.
    bool isWithoutWindow = false;
};

/// Decides which processes are launches of applications, and counts each launch once, however many
/// of its signs are seen: units, windows and bus names.
class AppLaunches {
public:
    /// A process that ends sooner is a command, not an application. Ask this long after it was
    /// found.
    static constexpr std::chrono::milliseconds kShortestRun{300};

    /// `isRunning` returns whether a process has not ended yet.
    explicit AppLaunches(std::function<bool(const ProcessId&)> isRunning);

    /// Forgets all launches. Processes that started before `now` count only by their first window.
    void begin(BootTime now);

    /// Returns whether the candidate is a launch not yet counted, and counts it.
    bool isLaunch(const LaunchCandidate& candidate);

    /// Returns the number of remembered launches.
    std::size_t remembered() const { return launches_.size(); }

private:
    struct Launch {
        LaunchCandidate::Found found;
        BootTime at;
        std::string application;
        std::set<ProcessId> processes;
        std::set<std::string> units;
        bool hasWindow = false;

        void add(const LaunchCandidate& sign);
        bool isSignedBy(const LaunchCandidate& candidate) const;
    };

    void forgetEnded(BootTime now);
    Launch* launchOf(const LaunchCandidate& candidate);

    const std::function<bool(const ProcessId&)> isRunning_;
    BootTime begin_{0};
    std::vector<Launch> launches_;
};

}  // namespace chimewerk
