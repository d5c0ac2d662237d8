// Programs that change their settings without pause are killed at random moments, again and again.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <thread>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/storage/json_defaults_store.h"
#include "linux/storage/settings_file.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

using Moment = std::chrono::steady_clock::time_point;
using namespace std::chrono_literals;

constexpr int kPrograms = 4;
constexpr int kRounds = 50;
/// Of nine in ten: how soon a busy machine lets a program run is not the program's.
constexpr auto kOldest = 250ms;
/// As a slider that is dragged.
constexpr Seconds kBetweenChanges{1.0 / 60};

/// When each state was made, in memory that outlives the program.
class Journal {
public:
    Journal() {
        void* const memory =
            mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no shared memory");
        }
        moments_ = static_cast<std::atomic<Moment::rep>*>(memory);
    }
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal() { munmap(moments_, kSize); }

    void note(int state) {
        at(state) = std::chrono::steady_clock::now().time_since_epoch().count();
    }
    /// None for a state that has not been made.
    std::optional<Moment> moment(int state) const {
        const Moment::rep ticks = at(state);
        return ticks == 0 ? std::nullopt : std::optional(Moment(Moment::duration(ticks)));
    }
    int lastState() const {
        int state = 0;
        while (moment(state + 1)) {
            ++state;
        }
        return state;
    }

private:
    static constexpr int kStates = 1 << 16;
    static constexpr std::size_t kSize = kStates * sizeof(std::atomic<Moment::rep>);

    std::atomic<Moment::rep>& at(int state) const {
        if (state >= kStates) {
            throw std::out_of_range("journal");
        }
        return moments_[state];
    }
    std::atomic<Moment::rep>* moments_;
};

/// A text that takes a while to write.
std::string large(const std::string& text) {
    return text + std::string(200'000, 'x') + text;
}

/// Several values that belong together.
void store(DefaultsStore& defaults, int state) {
    const std::string text = std::to_string(state);
    defaults.setObject("number", DefaultsValue{static_cast<double>(state)});
    defaults.setData("data", [text] { return DefaultsData{large(text)}; });
    defaults.setObject(
        "events",
        DefaultsValue{DefaultsDictionary{{"slap", {DefaultsDictionary{{"path", {text}}}}}}});
}

/// The state that the store holds whole, 0 when it holds nothing, none when it holds parts.
std::optional<int> wholeState(const DefaultsStore& defaults) {
    const auto number = defaults.object("number");
    const auto data = defaults.object("data");
    const auto events = defaults.object("events");
    if (!number && !data && !events) {
        return 0;
    }
    if (!number || !data || !events) {
        return std::nullopt;
    }
    const int state = static_cast<int>(std::get<double>(number->value));
    const std::string text = std::to_string(state);
    const bool whole =
        data == DefaultsValue{DefaultsData{large(text)}} &&
        events ==
            DefaultsValue{DefaultsDictionary{{"slap", {DefaultsDictionary{{"path", {text}}}}}}};
    return whole ? std::optional(state) : std::nullopt;
}

/// A program that goes on where the last one was killed.
class Program {
public:
    explicit Program(std::string configHome) : configHome_(std::move(configHome)) {}

    void start() {
        before_ = journal_.lastState();
        process_ = fork();
        if (process_ == 0) {
            changeForEver();
        }
    }
    /// Ends the program and checks what it leaves; the age of it.
    std::chrono::milliseconds kill() {
        ::kill(process_, SIGKILL);
        const Moment killed = std::chrono::steady_clock::now();
        waitpid(process_, nullptr, 0);
        EpollMainQueue queue;
        const JsonDefaultsStore left(queue, configHome_);
        const auto state = wholeState(left);
        EXPECT_TRUE(state) << "a part of a state";
        // What earlier programs did not live to write does not count.
        const auto superseded = journal_.moment(std::max(state.value_or(0), before_) + 1);
        return superseded
                   ? std::chrono::duration_cast<std::chrono::milliseconds>(killed - *superseded)
                   : 0ms;
    }
    int states() const { return journal_.lastState(); }

private:
    [[noreturn]] void changeForEver() {
        EpollMainQueue queue;
        JsonDefaultsStore defaults(queue, configHome_);
        int state = before_;
        const auto timer = queue.every(kBetweenChanges, [&] {
            journal_.note(++state);
            store(defaults, state);
        });
        queue.run();
        _exit(1);
    }

    const std::string configHome_;
    Journal journal_;
    /// The last state of the programs before this one.
    int before_ = 0;
    pid_t process_ = -1;
};

TEST(Settings, SurviveBeingKilledAtAnyMoment) {
    TemporaryFolder home;
    std::vector<std::unique_ptr<Program>> programs;
    for (int i = 0; i < kPrograms; ++i) {
        programs.push_back(std::make_unique<Program>(home / std::to_string(i)));
    }
    std::mt19937 random(std::random_device{}());
    std::vector<std::chrono::milliseconds> ages;
    for (int round = 0; round < kRounds; ++round) {
        const Moment started = std::chrono::steady_clock::now();
        std::multimap<std::chrono::milliseconds, Program*> lives;
        for (const auto& program : programs) {
            program->start();
            lives.emplace(std::chrono::milliseconds(random() % 450), program.get());
        }
        for (const auto& [life, program] : lives) {
            std::this_thread::sleep_until(started + life);
            ages.push_back(program->kill());
        }
    }
    std::sort(ages.begin(), ages.end());
    const auto oldOnes = ages[ages.size() * 9 / 10];
    std::cout << ages.size() << " kills; age of what was left: median "
              << ages[ages.size() / 2].count() << " ms, nine in ten at most " << oldOnes.count()
              << " ms, oldest " << ages.back().count() << " ms\n";
    EXPECT_LE(oldOnes, kOldest);
    for (const auto& program : programs) {
        EXPECT_GT(program->states(), kRounds) << "the programs hardly changed anything";
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
        EXPECT_EQ(entry.path().string().find("damaged"), std::string::npos) << entry.path();
    }
}

TEST(TheSettingsFile, IsWholeAndTheLastThatWasWrittenWheneverItsWriterIsKilled) {
    const TemporaryFolder home;
    const std::string path = home / "settings.json";
    Journal written;
    std::mt19937 random(std::random_device{}());
    constexpr int kKills = 200;
    for (int i = 0; i < kKills; ++i) {
        const pid_t writer = fork();
        if (writer == 0) {
            SettingsFile file(path);
            for (int state = written.lastState() + 1; file.replace(large(std::to_string(state)));
                 ++state) {
                written.note(state);
            }
            _exit(1);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
        ::kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        const int last = written.lastState();
        const std::string text = SettingsFile(path).read().text;
        EXPECT_TRUE(text == large(std::to_string(last)) ||
                    text == large(std::to_string(last + 1)) || (last == 0 && text.empty()))
            << "after state " << last << ": " << text.size() << " bytes";
    }
    const auto begin = std::filesystem::directory_iterator(home.path());
    std::cout << kKills << " kills, " << std::distance(begin, {}) - 1
              << " of them in the middle of a write\n";
}

}  // namespace
}  // namespace chimewerk
