// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <fcntl.h>
#include <linux/input.h>
#include <sys/stat.h>
#include <umockdev.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {

/// The event devices of a machine with a fake /dev/input. The test program runs in umockdev's
/// wrapper, which answers for the devices' abilities; pipes carry their events.
class FakeKeyboards {
public:
    FakeKeyboards() : bed_(umockdev_testbed_new()) { std::signal(SIGPIPE, SIG_IGN); }
    FakeKeyboards(const FakeKeyboards&) = delete;
    FakeKeyboards& operator=(const FakeKeyboards&) = delete;
    ~FakeKeyboards() { g_object_unref(bed_); }

    /// Adds the event device `name` with these keys and buttons. It may have been there before.
    void plug(const std::string& name, const std::vector<unsigned>& keys) {
        // The testbed accepts each name once; the device gets its own when it is complete.
        const std::string made = "/dev/input/made" + std::to_string(++made_);
        const std::string answersFile = answers_ / ("answers" + std::to_string(made_));
        std::ofstream(answersFile) << "@DEV " << made << '\n' << answers(keys);
        umockdev_testbed_load_ioctl(bed_, made.c_str(), answersFile.c_str(), nullptr);
        std::filesystem::rename(root() + "/ioctl" + made, root() + "/ioctl/dev/input/" + name);
        std::filesystem::create_directories(root() + "/dev/input");
        mkfifo((root() + made).c_str(), 0600);
        std::filesystem::rename(root() + made, file(name));
        std::filesystem::create_directories(abilities(name));
        std::ofstream(abilities(name) + "/key")
            << (std::ranges::find(keys, unsigned{KEY_A}) == keys.end()
                    ? "10000000000000 0\n"  // A power button's.
                    : "402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe\n");
    }
    /// Removes the device: readers get an error and its file vanishes.
    void unplug(const std::string& name) {
        pipeTo(name);
        pipes_.erase(name);
        std::filesystem::remove(file(name));
        std::filesystem::remove_all(abilities(name));
    }
    /// Returns the real path of the device's file.
    std::string file(const std::string& name) const { return root() + "/dev/input/" + name; }

    /// Makes the devices visible to other users; each file's permissions decide whether they can
    /// be read.
    void makeAccessible() const {
        using std::filesystem::perms;
        for (const char* const folder : {"", "/sys", "/sys/class", "/sys/class/input", "/ioctl",
                                         "/ioctl/dev", "/ioctl/dev/input", "/dev", "/dev/input"}) {
            std::filesystem::permissions(root() + folder, perms(0755));
        }
        for (const auto& socket :
             std::filesystem::directory_iterator(root() + "/ioctl/dev/input")) {
            std::filesystem::permissions(socket, perms(0666));
        }
    }

    /// Sends a key event: 1 pressed, 2 repeated, 0 released. It is lost if nobody reads.
    void send(const std::string& name, unsigned code, int value) {
        std::array<input_event, 2> events{};
        events[0].type = EV_KEY;
        events[0].code = static_cast<std::uint16_t>(code);
        events[0].value = value;
        events[1].type = EV_SYN;
        [[maybe_unused]] const auto size = write(pipeTo(name), events.data(), sizeof events);
    }

private:
    std::string root() const {
        const std::unique_ptr<char, decltype(&g_free)> path(umockdev_testbed_get_root_dir(bed_),
                                                            g_free);
        return path.get();
    }
    std::string abilities(const std::string& name) const {
        return root() + "/sys/class/input/" + name + "/device/capabilities";
    }
    /// Returns the pipe's descriptor. A pipe can be opened only while it has a reader, and then
    /// stays open.
    int pipeTo(const std::string& name) {
        FileDescriptor& pipe = pipes_[name];
        if (!pipe) {
            pipe = FileDescriptor(open(file(name).c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
        }
        return pipe.get();
    }
    /// Returns the device's answers to queries about its abilities.
    static std::string answers(const std::vector<unsigned>& keys) {
        std::vector<std::uint8_t> types(8);
        std::vector<std::uint8_t> codes(KEY_CNT / 8);
        types[0] = 1 << EV_SYN | 1 << EV_KEY;
        for (const unsigned key : keys) {
            codes.at(key / 8) |= static_cast<std::uint8_t>(1U << key % 8);
        }
        // The sizes that libevdev asks for.
        std::string text =
            "EVIOCGVERSION 0 01000100\nEVIOCGID 0 0300010001000100\nEVIOCGNAME(0) 4 " +
            hex({'k', 'e', 'y'}, 255) + "\nEVIOCGPROP(0) 8 " + hex({}, 8) + "\nEVIOCGBIT(0) 8 " +
            hex(types, 8) + "\nEVIOCGBIT(1) 96 " + hex(codes, 96) + "\nEVIOCGKEY(0) 96 " +
            hex({}, 96) + "\nEVIOCGLED(0) 8 " + hex({}, 8) + "\nEVIOCGSW(0) 8 " + hex({}, 8) +
            "\nEVIOCGBIT(21) 16 " + hex({}, 16) + "\n";
        for (const unsigned type : {EV_REL, EV_ABS, EV_MSC, EV_SW, EV_LED, EV_SND}) {
            text += "EVIOCGBIT(" + std::to_string(type) + ") 8 " + hex({}, 8) + "\n";
        }
        return text;
    }
    static std::string hex(std::vector<std::uint8_t> bytes, std::size_t size) {
        bytes.resize(size);
        std::string text;
        for (const std::uint8_t byte : bytes) {
            std::array<char, 3> digits{};
            std::snprintf(digits.data(), digits.size(), "%02X", byte);
            text += digits.data();
        }
        return text;
    }

    TemporaryFolder answers_;
    UMockdevTestbed* const bed_;
    int made_ = 0;
    std::map<std::string, FileDescriptor> pipes_;
};

}  // namespace chimewerk
