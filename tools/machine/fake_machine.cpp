// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <spawn.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "tools/machine/fake_devices.h"
#include "tools/machine/fake_hid_device.h"
#include "tools/machine/private_network.h"

namespace chimewerk {
namespace {

constexpr const char* kUsage =
    "fake-machine PIPE program [argument...]\n"
    "Runs the program on a machine with a lid sensor at 60 degrees, a display at half its "
    "brightness and,\n"
    "where this user may have that, a network of its own. Makes the pipe, which the program finds "
    "in\n"
    "$CHIMEWERK_MACHINE; what is written there, a line at a time, happens:\n"
    "  lid DEGREES   brightness PERCENT   usb   network up|down\n";

/// The fake hardware, and the changes that can happen to it.
class FakeMachine {
public:
    FakeMachine() {
        if (unshare(CLONE_NEWNET) == 0) {
            hasNetwork_ = PrivateNetwork::ip("link set lo up") &&
                          PrivateNetwork::ip("link add near type veth peer name far") &&
                          PrivateNetwork::ip("link set far up") &&
                          PrivateNetwork::ip("link set near up") &&
                          PrivateNetwork::ip("addr add 192.0.2.1/24 dev near") &&
                          PrivateNetwork::ip("route add default via 192.0.2.2 dev near");
        }
    }

    /// Carries out one command line. Returns false if it is not understood or fails.
    bool carryOut(const std::string& line) {
        std::istringstream words(line);
        std::string what;
        std::string how;
        words >> what >> how;
        if (what == "lid") {
            return moveLid(std::atoi(how.c_str()));
        }
        if (what == "brightness") {
            bed_.set(display_, "brightness", how + "\n");
            bed_.announce(display_, "change");
            return true;
        }
        if (what == "usb") {
            bed_.add("usb", "1-" + std::to_string(++sticks_), "", {}, {{"DEVTYPE", "usb_device"}});
            return true;
        }
        return what == "network" && hasNetwork_ && PrivateNetwork::ip("link set far " + how);
    }

private:
    /// Moves the lid as a hand does: through the angles in between.
    bool moveLid(int target) {
        constexpr int kStep = 5;
        while (angle_ != target) {
            angle_ += std::clamp(target - angle_, -kStep, kStep);
            lid_.reportAngle(angle_);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return true;
    }

    FakeDevices bed_;
    FakeHidDevice lid_{bed_, "0", kLidDescriptor};
    std::string display_ =
        bed_.add("backlight", "panel", "",
                 {{"type", "raw\n"}, {"brightness", "50\n"}, {"max_brightness", "100\n"}});
    int angle_ = 60;
    int sticks_ = 0;
    bool hasNetwork_ = false;
};

FileDescriptor openPipe(const char* path) {
    mkfifo(path, 0600);
    return FileDescriptor(open(path, O_RDWR | O_CLOEXEC));
}

/// Blocks the signals that are to end this program, and SIGCHLD, and returns a descriptor that
/// reports them. `before` receives the old signal mask.
FileDescriptor watchSignals(sigset_t& before) {
    sigset_t watched;
    sigemptyset(&watched);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD}) {
        sigaddset(&watched, signal);
    }
    sigprocmask(SIG_BLOCK, &watched, &before);
    return FileDescriptor(signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
}

std::optional<pid_t> start(char** command, const sigset_t& blocked) {
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &blocked);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int error = posix_spawnp(&child, command[0], nullptr, &attributes, command, environ);
    posix_spawnattr_destroy(&attributes);
    return error == 0 ? std::optional(child) : std::nullopt;
}

/// Handles the signals received. Returns the program's exit status if it has ended.
std::optional<int> handleSignals(const FileDescriptor& signals, pid_t program) {
    signalfd_siginfo received{};
    while (read(signals.get(), &received, sizeof received) > 0) {
        int status = 0;
        if (received.ssi_signo != SIGCHLD) {
            kill(program, static_cast<int>(received.ssi_signo));
        } else if (waitpid(program, &status, WNOHANG) == program) {
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
    }
    return std::nullopt;
}

/// Removes the complete lines from `text` and carries them out.
void carryOutLines(FakeMachine& machine, std::string& text) {
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
        const std::string line = text.substr(0, end);
        text.erase(0, end + 1);
        if (!machine.carryOut(line)) {
            std::cerr << "fake-machine: cannot do \"" << line << "\"\n";
        }
    }
}

bool isWrapped() {
    const FakeDevices bed;
    return FakeDevices::works();
}

/// Runs the command on the fake machine. `before` are the signals to block in it.
int run(const char* pipePath, char** command, const FileDescriptor& signals,
        const sigset_t& before) {
    const FileDescriptor pipe = openPipe(pipePath);
    // Must come before the devices start their threads.
    setenv("CHIMEWERK_MACHINE", pipePath, 1);
    FakeMachine machine;
    const std::optional<pid_t> program = start(command, before);
    if (!pipe || !signals || !program) {
        std::cerr << "fake-machine: cannot start\n";
        return 125;
    }
    std::string text;
    while (true) {
        std::array<pollfd, 2> ready{pollfd{pipe.get(), POLLIN, 0},
                                    pollfd{signals.get(), POLLIN, 0}};
        poll(ready.data(), ready.size(), -1);
        if (const std::optional<int> status = handleSignals(signals, *program)) {
            unlink(pipePath);
            return *status;
        }
        if (ready[0].revents != 0) {
            std::array<char, 256> buffer{};
            const ssize_t size = read(pipe.get(), buffer.data(), buffer.size());
            text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
            carryOutLines(machine, text);
        }
    }
}

}  // namespace
}  // namespace chimewerk

int main(int count, char** arguments) {
    if (count < 3) {
        std::cerr << chimewerk::kUsage;
        return 2;
    }
    // Must come before the first thread: one that does not block SIGCHLD could take it away, and the
    // program's end would be missed.
    sigset_t before;
    const chimewerk::FileDescriptor signals = chimewerk::watchSignals(before);
    if (!chimewerk::isWrapped()) {
        // Starts this program again with the library that replaces real devices by fake ones.
        sigprocmask(SIG_SETMASK, &before, nullptr);
        std::string wrapper = "umockdev-wrapper";
        std::vector<char*> again{wrapper.data()};
        again.insert(again.end(), arguments, arguments + count);
        again.push_back(nullptr);
        execvp(again[0], again.data());
        std::cerr << "fake-machine: umockdev-wrapper is missing\n";
        return 125;
    }
    return chimewerk::run(arguments[1], arguments + 2, signals, before);
}
