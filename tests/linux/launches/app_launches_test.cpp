// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/app_launches.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "linux/launches/app_unit.h"

namespace chimewerk {
namespace {

using Candidate = LaunchCandidate;
using Entry = LaunchCandidate::Entry;
using Found = LaunchCandidate::Found;
using std::chrono::seconds;

constexpr BootTime kBegin = seconds(1000);

/// A process that starts a second after the beginning.
ProcessId process(pid_t number) {
    return {.number = number, .start = kBegin + seconds(1)};
}

/// A unit with a visible entry.
Candidate unit(const std::string& name, pid_t number) {
    const AppUnit parsed = AppUnit::parse(name);
    Candidate candidate;
    candidate.found = Found::inUnit;
    candidate.process = process(number);
    candidate.application = parsed.application;
    candidate.unit = name;
    candidate.isAutostarted = parsed.autostarted;
    candidate.entry = Entry::visible;
    return candidate;
}

Candidate window(pid_t number, const std::string& application = "") {
    Candidate candidate;
    candidate.process = process(number);
    candidate.application = application;
    return candidate;
}

Candidate busName(const std::string& name, pid_t number) {
    Candidate candidate = window(number, name);
    candidate.found = Found::byBusName;
    candidate.entry = Entry::visible;
    return candidate;
}

Candidate with(Candidate candidate, Entry entry) {
    candidate.entry = entry;
    return candidate;
}

Candidate childOf(const std::vector<pid_t>& ancestors, Candidate candidate) {
    for (const pid_t ancestor : ancestors) {
        candidate.ancestors.push_back(process(ancestor));
    }
    return candidate;
}

Candidate in(const std::string& unitName, Candidate candidate) {
    candidate.unit = unitName;
    return candidate;
}

/// Moves a candidate to this time after the beginning.
Candidate at(seconds time, Candidate candidate) {
    candidate.moment = kBegin + time;
    return candidate;
}

/// Started by the session manager, and seen this time after the session's begin.
Candidate bySession(seconds age, Candidate candidate) {
    candidate.moment = kBegin + seconds(2);
    candidate.sessionStart = candidate.moment - age;
    return candidate;
}

Candidate autostarted(Candidate candidate) {
    candidate.isAutostarted = true;
    return candidate;
}

Candidate partOfSession(Candidate candidate) {
    candidate.isPartOfSession = true;
    return candidate;
}

Candidate withoutWindow(Candidate candidate) {
    candidate.isWithoutWindow = true;
    return candidate;
}

Candidate startedAt(BootTime start, Candidate candidate) {
    candidate.process.start = start;
    return candidate;
}

struct Step {
    Candidate candidate;
    bool isLaunch;
};

struct Case {
    const char* what;
    std::vector<Step> steps;
};

constexpr const char* kTerminal = "app-gnome-xterm-100.scope";
constexpr const char* kWriter = "app-gnome-org.libreoffice.LibreOffice.writer-77.scope";
constexpr const char* kSnap = "snap.firefox.firefox-0f8e5bb4-5a1e-4b59-a5a3-2ac18b4f5f0b.scope";
constexpr const char* kSandbox = "app-flatpak-org.libreoffice.LibreOffice-77.scope";
constexpr pid_t kDead = 666;

std::vector<Case> cases() {
    return {
        {"Chromium moves itself into a second unit",
         {{unit("app-gnome-google\\x2dchrome-1234.scope", 1234), true},
          {unit("app-org.chromium.Chromium-1234.scope", 1234), false},
          {window(1234, "Google-chrome"), false}}},
        {"Flatpak puts an application into a unit with another name",
         {{unit(kWriter, 77), true},
          {unit(kSandbox, 77), false},
          {in(kSandbox, childOf({78, 77}, window(79, "libreoffice-writer"))), false}}},
        {"A snap has a unit of its own, which a terminal starts as well",
         {{unit("app-gnome-firefox_firefox-900.scope", 900), true},
          {unit(kSnap, 900), false},
          {window(900, "firefox"), false},
          {unit(kSnap, 901), true}}},
        {"The bus starts an application, which opens a window",
         {{busName("org.gnome.Nautilus", 200), true},
          {window(200, "org.gnome.Nautilus"), false},
          {busName("org.gnome.Nautilus", 200), false}}},
        {"A search starts an application, which is opened later",
         {{withoutWindow(busName("org.gnome.Nautilus", 210)), false},
          {busName("org.gnome.Nautilus", 210), true}}},
        {"A terminal, and programs typed there",
         {{unit(kTerminal, 100), true},
          {in(kTerminal, window(100, "XTerm")), false},
          {in(kTerminal, childOf({101, 100}, window(102, "XClock"))), true},
          {in(kTerminal, childOf({101, 100}, window(102, "XClock"))), false},
          {in(kTerminal, childOf({101, 100}, window(103, "XClock"))), true},
          {at(seconds(60), childOf({101, 100}, unit("app-flatpak-org.gnome.Maps-104.scope", 104))),
           true}}},
        {"A script starts the program that opens the window",
         {{unit("app-org.gimp.GIMP@0a1b.service", 300), true},
          {in("app-org.gimp.GIMP@0a1b.service", childOf({300}, window(301, "Gimp"))), false},
          {in("app-org.gimp.GIMP@0a1b.service", childOf({300}, window(302, "Gimp"))), true}}},
        {"A command has another process open its window",
         {{unit("app-gnome-org.gnome.Terminal-310.scope", 310), true},
          {window(311, "org.gnome.Terminal"), false},
          {busName("org.gnome.Maps", 320), true},
          {unit("app-gnome-org.gnome.Maps-321.scope", 321), false}}},
        {"A game and its launcher",
         {{unit("app-steam@0a1b.service", 400), true},
          {in("app-steam@0a1b.service", window(400, "steam")), false},
          {at(seconds(300), in("app-steam@0a1b.service", childOf({400}, window(401, "game")))),
           true}}},
        {"The same application twice",
         {{unit("app-org.kde.dolphin@0a1b.service", 500), true},
          {unit("app-org.kde.dolphin@0a1c.service", 501), true},
          {window(500, "dolphin"), false},
          {window(501, "dolphin"), false}}},
        {"The session starts programs at login",
         {{bySession(seconds(2),
                     autostarted(with(
                         unit("app-gnome-org.gnome.Evolution\\x2dalarm\\x2dnotify-900.scope", 900),
                         Entry::hidden))),
           false},
          {unit("app-nm\\x2dapplet@autostart.service", 901), false},
          {window(901, "Nm-applet"), false},
          {bySession(seconds(59), window(902, "Xterm")), false},
          {bySession(seconds(61), window(903, "Xterm")), true},
          {bySession(seconds(90), autostarted(window(904, "conky"))), false}}},
        {"Commands bound to keys, and what no menu shows",
         {{with(unit("app-niri-wpctl-500.scope", 500), Entry::none), false},
          {with(unit("app-gnome-org.gnome.Shell.PortalHelper-501.scope", 501), Entry::hidden),
           false},
          {with(busName("org.gnome.Calculator.SearchProvider", 502), Entry::none), false},
          {unit("app-gnome-org.gnome.Calculator-666.scope", kDead), false},
          {window(kDead), false},
          {window(503), true}}},
        {"Parts of the desktop",
         {{partOfSession(busName("org.kde.krunner", 600)), false},
          {partOfSession(window(601, "ksmserver-logout-greeter")), false}}},
        {"What was running before",
         {{startedAt(kBegin - seconds(1), busName("org.gnome.Maps", 700)), false},
          {startedAt(kBegin - seconds(1), bySession(seconds(70), window(700, "Thunar"))), true},
          {startedAt(kBegin - seconds(1), unit(kTerminal, 701)), false},
          {childOf({701}, window(702)), true}}},
        {"A number that is used again",
         {{window(800), true}, {startedAt(kBegin + seconds(9), window(800)), true}}},
        {"Windows from other machines", {{window(0), true}, {window(0), true}}},
    };
}

TEST(TheAppLaunches, CountEachLaunchOnce) {
    for (const Case& c : cases()) {
        AppLaunches launches([](const ProcessId& asked) { return asked.number != kDead; });
        launches.begin(kBegin);
        int number = 0;
        for (Step step : c.steps) {
            step.candidate.moment = std::max(step.candidate.moment, kBegin + seconds(2));
            EXPECT_EQ(launches.isLaunch(step.candidate), step.isLaunch)
                << c.what << ", step " << ++number << ": " << step.candidate.unit << " "
                << step.candidate.application;
        }
    }
}

TEST(TheAppLaunches, ForgetWhatHasEnded) {
    std::set<ProcessId> dead;
    AppLaunches launches([&](const ProcessId& asked) { return !dead.contains(asked); });
    launches.begin(kBegin);
    for (pid_t number = 1; number <= 500; ++number) {
        EXPECT_TRUE(launches.isLaunch(at(seconds(2 * number), window(number))));
        dead.insert(process(number));
    }
    EXPECT_LE(launches.remembered(), 31U);  // Those of the last minute.
}

}  // namespace
}  // namespace chimewerk
