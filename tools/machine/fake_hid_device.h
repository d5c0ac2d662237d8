// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "tools/machine/fake_devices.h"

namespace chimewerk {

/// The report descriptor of a sensor in a lid's hinge.
inline const std::vector<std::uint8_t> kLidDescriptor{0x05, 0x20, 0x09, 0x8A, 0xA1, 0x01,
                                                      0x85, 0x01, 0x09, 0x8A, 0x75, 0x10,
                                                      0x95, 0x01, 0x81, 0x02, 0xC0};

/// A fake HID device. Its hidraw node is a raw terminal: the device's reports can be read there,
/// and reading fails once the device is unplugged.
class FakeHidDevice {
public:
    using Report = std::vector<std::uint8_t>;

    FakeHidDevice(FakeDevices& machine, const std::string& number, const Report& descriptor)
        : machine_(machine),
          path_(machine.nodePath("hidraw" + number)),
          terminal_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (!terminal_ || unlockpt(terminal_.get()) != 0 || ptsname(terminal_.get()) == nullptr) {
            throw std::runtime_error("a fake device needs a terminal, and there is none to be had");
        }
        termios settings{};
        tcgetattr(terminal_.get(), &settings);
        cfmakeraw(&settings);
        tcsetattr(terminal_.get(), TCSANOW, &settings);
        std::filesystem::create_symlink(ptsname(terminal_.get()), path_);
        device_ = machine.add("hid", "0018:0000:0000.000" + number);
        machine.set(device_, "report_descriptor", descriptor);
        node_ = machine.add("hidraw", "hidraw" + number, device_, {},
                            {{"DEVNAME", "/dev/hidraw" + number}});
    }
    FakeHidDevice(const FakeHidDevice&) = delete;
    FakeHidDevice& operator=(const FakeHidDevice&) = delete;
    ~FakeHidDevice() { unplug(); }

    /// Sends a report. The next one may be sent once this one has been read.
    void report(const Report& bytes) {
        if (write(terminal_.get(), bytes.data(), bytes.size()) !=
            static_cast<ssize_t>(bytes.size())) {
            throw std::runtime_error("a fake device cannot report");
        }
    }
    void reportAngle(int degrees) {
        report({1, static_cast<std::uint8_t>(degrees & 0xFF),
                static_cast<std::uint8_t>(degrees >> 8)});
    }
    void unplug() {
        if (!node_.empty()) {
            std::filesystem::remove(path_);
            machine_.remove(std::exchange(node_, ""));
            machine_.remove(device_);
            terminal_ = FileDescriptor();
        }
    }

private:
    FakeDevices& machine_;
    const std::string path_;
    FileDescriptor terminal_;
    std::string device_;
    std::string node_;
};

}  // namespace chimewerk
