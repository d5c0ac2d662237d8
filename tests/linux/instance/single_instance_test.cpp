// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/instance/single_instance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "linux/base/file_descriptor.h"
#include "support/private_bus.h"
#include "support/run_queue.h"
#include "tools/process/child_process.h"
#include "tools/process/eventually.h"

namespace chimewerk {
namespace {

constexpr const char* kId = "org.chimewerk.Test-Program";
using namespace std::chrono_literals;
using Outcome = SingleInstance::Outcome;

/// One instance in the test, and others launched as separate processes.
class TheSingleInstance : public testing::Test {
protected:
    ~TheSingleInstance() override { setTokens("", ""); }

    static void setTokens(const char* activationToken, const char* startupId) {
        setenv("XDG_ACTIVATION_TOKEN", activationToken, 1);
        setenv("DESKTOP_STARTUP_ID", startupId, 1);
    }
    SingleInstance::Callbacks callbacks() {
        return {
            .onActivate = [this](const std::string& token) { log += "activate " + token + "; "; },
            .onAction = [this](const std::string& action,
                               const std::string& token) { log += action + " " + token + "; "; }};
    }
    Outcome claim() {
        instance.emplace(queue, kId, callbacks(), kTiming);
        return instance->claim({});
    }
    /// Returns whether any instance owns the name on the bus.
    static bool isNameOwned() {
        sd_bus* asked = nullptr;
        sd_bus_open_user(&asked);
        const std::unique_ptr<sd_bus, UnrefBus> closing(asked);
        return sd_bus_get_name_creds(asked, kId, 0, nullptr) >= 0;
    }
    /// Launches the program again.
    void launch(const std::string& action = "") {
        launched.emplace_back(
            std::vector<std::string>{LAUNCHED_INSTANCE, kId, folder / "log", action});
    }
    /// Returns how often the launched programs have logged this line.
    long timesLogged(const std::string& wanted) {
        std::ifstream lines(folder / "log");
        long count = 0;
        for (std::string line; std::getline(lines, line);) {
            count += line == wanted ? 1 : 0;
        }
        return count;
    }
    /// Launches the program again, waits until it has found the running instance, and returns the
    /// request that the instance received.
    std::string requestOfLaunch(const std::string& action = "") {
        const long before = timesLogged("already");
        launch(action);
        EXPECT_TRUE(runUntil(queue, [&] { return timesLogged("already") > before; }));
        runReady(queue);
        return std::exchange(log, "");
    }

    static constexpr SingleInstance::Timing kTiming{
        .busPatience = 50ms, .instancePatience = 100ms, .retryInterval = Seconds{0.02}};
    PrivateBus bus{"DBUS_SESSION_BUS_ADDRESS"};
    TemporaryFolder folder;
    EpollMainQueue queue;
    std::string log;
    std::optional<SingleInstance> instance;
    std::list<ChildProcess> launched;
};

TEST_F(TheSingleInstance, IsOneOfSeveralLaunchedAtTheSameTime) {
    constexpr long kLaunches = 8;
    ASSERT_TRUE(bus.start());
    for (long round = 1; round <= 5; ++round) {
        for (long i = 0; i < kLaunches; ++i) {
            launch();
        }
        ASSERT_TRUE(eventually([&] {
            return timesLogged("first") + timesLogged("already") == round * kLaunches + round - 1;
        }));
        EXPECT_EQ(timesLogged("first"), round);
        EXPECT_TRUE(
            eventually([&] { return timesLogged("activate ") == round * (kLaunches - 1); }));
        launch(SingleInstance::kQuit);
        ASSERT_TRUE(eventually([&] {
            return timesLogged("ended") == round && timesLogged("already") == round * kLaunches;
        }));
    }
}

TEST_F(TheSingleInstance, ReceivesARequestFromEachFurtherLaunch) {
    ASSERT_TRUE(bus.start());
    ASSERT_EQ(claim(), Outcome::first);
    struct Case {
        const char* activationToken;
        const char* startupId;
        const char* action;
        const char* asked;
    };
    for (const Case& c : {Case{"token", "id_TIME5", "", "activate token; "},
                          Case{"", "id_TIME5", "", "activate id_TIME5; "},
                          Case{"", "", "", "activate ; "}, Case{"\xff", "", "", "activate ; "},
                          Case{"token", "", "open-dashboard", "open-dashboard token; "},
                          Case{"", "", "open-help", "open-help ; "},
                          Case{"", "", "quit", "quit ; "}, Case{"", "", "dance", ""}}) {
        setTokens(c.activationToken, c.startupId);
        EXPECT_EQ(requestOfLaunch(c.action), c.asked);
    }
}

/// The caller is another client, which reads the interface by introspection.
TEST_F(TheSingleInstance, ReceivesRequestsFromTheDesktop) {
    ASSERT_TRUE(bus.start());
    ASSERT_EQ(claim(), Outcome::first);
    const auto call = [this](std::vector<std::string> methodAndArguments) {
        methodAndArguments.insert(methodAndArguments.begin(),
                                  {"gdbus", "call", "--session", "--dest", kId, "--object-path",
                                   "/org/chimewerk/Test_Program", "--method"});
        const ChildProcess caller(methodAndArguments);
        EXPECT_TRUE(runUntil(queue, [this] { return !log.empty(); }));
        return std::exchange(log, "");
    };
    EXPECT_EQ(call({"org.freedesktop.Application.Open", "['file:///a', 'file:///b']",
                    "{'desktop-startup-id': <'id'>, 'size': <uint32 3>}"}),
              "activate id; ");
    EXPECT_EQ(call({"org.freedesktop.Application.ActivateAction", "open-help", "[<true>]",
                    "{'desktop-startup-id': <'id'>, 'activation-token': <'token'>}"}),
              "open-help token; ");
    EXPECT_EQ(call({"org.freedesktop.Application.Activate", "{'activation-token': <5>}"}),
              "activate ; ");
}

TEST_F(TheSingleInstance, IsReplacedByALaunchThatFindsItQuitting) {
    ASSERT_TRUE(bus.start());
    for (const int milliseconds : {0, 5, 10, 20, 100}) {
        const long before = timesLogged("first");
        ASSERT_EQ(claim(), Outcome::first);
        launch();
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        instance.reset();
        EXPECT_TRUE(eventually([&] { return timesLogged("first") == before + 1; })) << milliseconds;
        launched.clear();
    }
    EXPECT_EQ(timesLogged("already"), 0);
}

TEST_F(TheSingleInstance, DoesNotBlockLaunchesForeverWhenItHangs) {
    ASSERT_TRUE(bus.start());
    ASSERT_EQ(claim(), Outcome::first);
    SingleInstance second(queue, kId, callbacks(), kTiming);
    EXPECT_EQ(second.claim({}), Outcome::notAnswering);
    EXPECT_EQ(log, "");
    runReady(queue);
    EXPECT_EQ(log, "activate ; ");
}

TEST_F(TheSingleInstance, RunsWithoutABusAndClaimsTheNameOnceThereIsOne) {
    for (const bool hasBus : {false, true}) {
        if (hasBus) {
            ASSERT_TRUE(bus.start());
        }
        EXPECT_EQ(claim(), hasBus ? Outcome::first : Outcome::noBus);
        if (hasBus) {
            bus.kill();
            runReady(queue);
        }
        ASSERT_TRUE(bus.start());
        ASSERT_TRUE(runUntil(queue, isNameOwned));
        EXPECT_EQ(requestOfLaunch(), "activate ; ");
        bus.kill();
    }
    ASSERT_TRUE(bus.start());
    launch();
    ASSERT_TRUE(eventually([&] { return timesLogged("first") == 1; }));
    while (wakeUpsWithin(queue, Seconds{0.1}) > 0) {
    }
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);  // It has stopped trying.
    EXPECT_EQ(requestOfLaunch(), "");
}

TEST_F(TheSingleInstance, DoesNotWaitForABusThatHangs) {
    const FileDescriptor silent(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    bus.path().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(silent.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(silent.get(), 4), 0);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(claim(), Outcome::noBus);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);  // The library would wait for 25 s.
    runReady(queue);
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);
}

}  // namespace
}  // namespace chimewerk
