// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Kills a program that constantly stores settings, at random moments, again and again.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <random>
#include <thread>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/storage/json_defaults_store.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

/// Returns values that belong together and take a while to write.
DefaultsDictionary stateOf(int number) {
    const std::string text = std::to_string(number);
    return {{"number", {static_cast<double>(number)}},
            {"data", {DefaultsData{text + std::string(200'000, 'x') + text}}},
            {"events", {DefaultsDictionary{{"slap", {DefaultsDictionary{{"path", {text}}}}}}}}};
}

/// Stores one state after another forever. Writes the number of each into the pipe before
/// storing it.
[[noreturn]] void storeForever(const std::string& home, int lastState, int pipe) {
    EpollMainQueue queue;
    JsonDefaultsStore store(queue, home);
    for (int number = lastState + 1;; ++number) {
        if (write(pipe, &number, sizeof number) != sizeof number) {
            _exit(1);
        }
        for (const auto& [key, value] : stateOf(number)) {
            store.setObject(key, value);
        }
        store.flush();
    }
}

std::ptrdiff_t filesIn(const std::string& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

TEST(Settings, AreWholeAndAtMostOneStateOldWheneverTheProgramIsKilled) {
    const auto seed = std::random_device{}();
    std::mt19937 random(seed);
    const TemporaryFolder home;
    int stored = 0;
    int cutOff = 0;
    for (int kill = 0; kill < 60; ++kill) {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        const FileDescriptor readEnd(ends[0]);
        FileDescriptor writeEnd(ends[1]);
        const pid_t program = fork();
        if (program == 0) {
            storeForever(home.path().string(), stored, writeEnd.get());
        }
        writeEnd = FileDescriptor();
        int begun = 0;
        // The second message means that the first state is written.
        for (int message = 0; message < 2; ++message) {
            ASSERT_EQ(read(readEnd.get(), &begun, sizeof begun), sizeof begun);
        }
        // Half of the kills come at any moment, half soon after a file was begun.
        std::chrono::microseconds life(random() % 30'000);
        if (kill % 2 == 0) {
            const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
            while (filesIn(home / "chimewerk") < 2 && std::chrono::steady_clock::now() < deadline) {
            }
            life = std::chrono::microseconds(random() % 1000);
        }
        std::this_thread::sleep_for(life);
        ::kill(program, SIGKILL);
        waitpid(program, nullptr, 0);
        while (read(readEnd.get(), &begun, sizeof begun) > 0) {
        }

        EpollMainQueue queue;
        const JsonDefaultsStore left(queue, home.path().string());
        const auto number = left.object("number").value_or(DefaultsValue{0.0});
        stored = static_cast<int>(std::get<double>(number.value));
        EXPECT_TRUE(stored == begun || stored == begun - 1)
            << stored << " instead of " << begun << ", seed " << seed;
        for (const auto& [key, value] : stored == 0 ? DefaultsDictionary{} : stateOf(stored)) {
            EXPECT_EQ(left.object(key), value) << key << ", seed " << seed;
        }
        cutOff += stored > 0 && filesIn(home / "chimewerk") > 1 ? 1 : 0;
    }
    EXPECT_GE(stored, 60) << "hardly anything was written, seed " << seed;
    EXPECT_GT(cutOff, 0) << "no kill came in the middle of a write, seed " << seed;
    {
        EpollMainQueue queue;
        JsonDefaultsStore(queue, home.path().string()).setObject("number", std::nullopt);
    }
    EXPECT_EQ(filesIn(home / "chimewerk"), 1) << "leftovers, or settings taken for damaged";
}

}  // namespace
}  // namespace chimewerk
