// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/launch_facts.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "linux/launches/process_status.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/child_process.h"
#include "tools/process/eventually.h"

namespace chimewerk {
namespace {

/// Real processes, and entries in a folder of the test.
class TheLaunchFacts : public testing::Test {
protected:
    void write(const std::string& file, const std::string& lines) {
        std::filesystem::create_directories(folder / file.substr(0, file.find('/')));
        std::ofstream(folder / file) << "[Desktop Entry]\nType=Application\n" << lines << '\n';
    }
    LaunchFacts facts() {
        return {DesktopEntries({folder / "applications"}, {"XFCE"}),
                DesktopEntries({folder / "autostart"}, {})};
    }
    /// Returns the only child, once it runs `program`.
    static pid_t childOf(pid_t parent, const std::string& program) {
        const std::string number = std::to_string(parent);
        pid_t child = 0;
        EXPECT_TRUE(eventually([&] {
            std::ifstream("/proc/" + number + "/task/" + number + "/children") >> child;
            const auto programs = readPrograms(child);
            return !programs.empty() && programs.back() == program;
        }));
        return child;
    }

    TemporaryFolder folder;
};

TEST_F(TheLaunchFacts, KnowWhatTheSessionManagerHasStarted) {
    std::filesystem::copy_file("/bin/sh", folder / "xfce4-session");
    const ChildProcess manager({folder / "xfce4-session", "-c", "sleep 60 & wait"});
    const LaunchSign sign{.processes = {childOf(manager.id(), "sleep")}};
    const auto started = facts().of(sign);
    ASSERT_TRUE(started && started->sessionStart);
    EXPECT_EQ(started->sessionStart, readProcessStatus(manager.id())->id.start);
    EXPECT_FALSE(started->isAutostarted);
    EXPECT_EQ(started->ancestors.front().number, manager.id());
    write("autostart/late.desktop", "Exec=sleep 60");
    EXPECT_TRUE(facts().of(sign)->isAutostarted);
    // A part of the desktop starts what the user chooses.
    std::filesystem::copy_file("/bin/sh", folder / "xfce4-panel");
    const ChildProcess session(
        {folder / "xfce4-session", "-c", folder / "xfce4-panel" + " -c 'sleep 60 & wait' & wait"});
    const pid_t panel = childOf(session.id(), "xfce4-panel");
    const auto chosen = facts().of({.processes = {childOf(panel, "sleep")}});
    EXPECT_TRUE(chosen && !chosen->sessionStart && chosen->ancestors.size() >= 2);
    // What another program has started, the session has not.
    const ChildProcess typed({"sleep", "60"});
    const auto other = facts().of({.processes = {typed.id()}});
    ASSERT_TRUE(other);
    EXPECT_FALSE(other->sessionStart || other->isAutostarted);
}

TEST_F(TheLaunchFacts, AreThoseOfTheEldestProcessOfAUnit) {
    write("applications/org.kde.dolphin.desktop", "Exec=dolphin %u");
    const ChildProcess wrapper({"sh", "-c", "sleep 60; true"});
    const pid_t child = childOf(wrapper.id(), "sleep");
    LaunchSign sign{.found = LaunchCandidate::Found::inUnit,
                    .processes = {child, wrapper.id()},
                    .unit = "app-org.kde.dolphin@0a1b.service"};
    const auto found = facts().of(sign);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->process.number, wrapper.id());
    EXPECT_TRUE(isRunning(found->process));
    EXPECT_EQ(found->application, "org.kde.dolphin");
    EXPECT_EQ(found->unit, sign.unit);
    EXPECT_EQ(found->entry, LaunchCandidate::Entry::visible);
    EXPECT_LE(found->process.start, found->moment);
    EXPECT_FALSE(isRunning({.number = wrapper.id(), .start = found->process.start - BootTime(1)}));
}

TEST_F(TheLaunchFacts, KnowPartsOfTheDesktop) {
    write("applications/run.desktop", "Exec=xfce4-appfinder\nCategories=Utility;X-XFCE;");
    const ChildProcess command({"sleep", "60"});
    const auto window = facts().of({.processes = {command.id()}, .application = "run"});
    EXPECT_TRUE(window && window->isPartOfSession);
}

TEST_F(TheLaunchFacts, AreNoneForProcessesThatHaveEnded) {
    ChildProcess ended({"true"});
    EXPECT_TRUE(eventually([&] { return !readProcessStatus(ended.id()); }));  // Not waited for yet.
    EXPECT_FALSE(facts().of({.processes = {ended.id()}}));
    EXPECT_EQ(facts().of({})->process.number, 0);
}

TEST_F(TheLaunchFacts, TellServicesFromWhatTheUserOpens) {
    write("applications/org.example.Files.desktop", "DBusActivatable=true");
    write("applications/org.example.Plain.desktop", "");
    const ChildProcess service({"sh", "-c", "sleep 60; true", "--gapplication-service"});
    childOf(service.id(), "sleep");
    LaunchSign sign{.found = LaunchCandidate::Found::byBusName,
                    .processes = {service.id()},
                    .application = "org.example.Files"};
    EXPECT_TRUE(facts().of(sign)->isWithoutWindow);
    EXPECT_EQ(facts().of(sign)->entry, LaunchCandidate::Entry::visible);
    sign.hasWindow = true;
    EXPECT_FALSE(facts().of(sign)->isWithoutWindow);
    sign.application = "org.example.Plain";  // The bus does not start it under this name.
    EXPECT_EQ(facts().of(sign)->entry, LaunchCandidate::Entry::none);
    // A key of Plasma has Spectacle take a screenshot, for which the bus starts this unit.
    write("applications/org.kde.spectacle.desktop", "Exec=/usr/bin/spectacle");
    const ChildProcess program({"sleep", "60"});
    for (const auto& [unit, isWithoutWindow] :
         {std::pair("app-org.kde.spectacle.service", true),
          std::pair("app-org.kde.spectacle@0a1b.service", false),
          std::pair("app-org.kde.spectacle-3c407e.scope", false),
          std::pair("app-org.example.Files.service", false)}) {
        const auto found = facts().of(
            {.found = LaunchCandidate::Found::inUnit, .processes = {program.id()}, .unit = unit});
        EXPECT_EQ(found->isWithoutWindow, isWithoutWindow) << unit;
    }
}

}  // namespace
}  // namespace chimewerk
