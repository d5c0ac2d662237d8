// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/evdev/evdev_key_source.h"

#include <fcntl.h>
#include <libevdev/libevdev.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "linux/base/file_reading.h"
#include "linux/base/folder_watch.h"
#include "linux/base/sysfs.h"
#include "linux/evdev/wayland_repeat_info.h"
#include "linux/keys/key_codes.h"
#include "linux/keys/key_repeat.h"

namespace chimewerk {

namespace {

struct FreeDevice {
    void operator()(libevdev* device) const { libevdev_free(device); }
};

/// Returns the inode of the file at this path, or 0 if there is none. A device that is plugged in
/// again has the same name but another inode.
ino_t fileAt(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

struct KeyEvent {
    /// As the kernel numbers them.
    enum class Change { released, pressed, repeated };

    /// The kernel's.
    std::uint8_t code;
    std::int64_t keyCode;
    Change change;
};
using OnKey = std::function<void(const KeyEvent&)>;

/// A keyboard that is open for reading.
class Keyboard {
public:
    /// Returns null if the device is no keyboard or cannot be read.
    static std::unique_ptr<Keyboard> open(const std::string& path) {
        if (access(path.c_str(), R_OK) != 0) {
            return nullptr;
        }
        FileDescriptor descriptor(
            ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
        libevdev* device = nullptr;
        if (!descriptor || libevdev_new_from_fd(descriptor.get(), &device) != 0) {
            return nullptr;
        }
        std::unique_ptr<Keyboard> keyboard(new Keyboard(std::move(descriptor), device));
        return keyboard->hasTypingKeys() ? std::move(keyboard) : nullptr;
    }

    int descriptor() const { return descriptor_.get(); }

    ino_t file() const {
        struct stat status {};
        return fstat(descriptor_.get(), &status) == 0 ? status.st_ino : 0;
    }

    /// Reports what has happened to keys that type since the last call. Returns false if the
    /// keyboard is gone.
    bool read(const OnKey& onKey) {
        bool anything = false;
        input_event event{};
        int status = 0;
        // After an overrun the kernel's queue continues with the latest events; lost ones
        // are skipped.
        while ((status = libevdev_next_event(device_.get(), LIBEVDEV_READ_FLAG_NORMAL, &event)) >=
               0) {
            anything = true;
            if (status == LIBEVDEV_READ_STATUS_SUCCESS && event.type == EV_KEY) {
                if (const auto keyCode = virtualKeyCode(event.code)) {
                    onKey({.code = static_cast<std::uint8_t>(event.code),
                           .keyCode = *keyCode,
                           .change = static_cast<KeyEvent::Change>(event.value)});
                }
            }
        }
        return status == -EAGAIN && (anything || !hungUp());
    }

    bool isDown(std::uint8_t code) const {
        return libevdev_get_event_value(device_.get(), EV_KEY, code) != 0;
    }

private:
    Keyboard(FileDescriptor descriptor, libevdev* device)
        : descriptor_(std::move(descriptor)), device_(device) {}

    /// Returns whether the device has a key for typing. Power buttons, mice and headsets have
    /// other keys.
    bool hasTypingKeys() const {
        for (unsigned code = 0; code < KEY_CNT; ++code) {
            if (virtualKeyCode(code) && libevdev_has_event_code(device_.get(), EV_KEY, code) != 0) {
                return true;
            }
        }
        return false;
    }

    bool hungUp() const {
        pollfd state{.fd = descriptor_.get(), .events = POLLIN, .revents = 0};
        return poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR)) != 0;
    }

    FileDescriptor descriptor_;
    std::unique_ptr<libevdev, FreeDevice> device_;
};

std::vector<std::string> eventDevices(const std::string& folder) {
    auto names = namesIn(folder);
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("event"); });
    return names;
}

/// Whether the event device is a full keyboard, also if it may not be read. udev uses the same
/// criterion: it has each of the kernel's first keys, from Escape to D.
bool isFullKeyboard(const std::string& name) {
    const auto keys = readSysfsLine("/sys/class/input/" + name + "/device/capabilities/key");
    if (!keys) {
        return false;
    }
    constexpr unsigned long long kFirstKeys = 0xFFFF'FFFE;
    const std::size_t lastWord = keys->find_last_of(' ') + 1;
    return (std::strtoull(keys->c_str() + lastWord, nullptr, 16) & kFirstKeys) == kFirstKeys;
}

class EvdevKeyTap final : public KeyTap {
public:
    EvdevKeyTap(EpollMainQueue& queue, std::string folder, std::string waylandDisplay,
                const ActiveSeat::Logind& logind, KeyTapCallbacks callbacks)
        : queue_(queue),
          folder_(std::move(folder)),
          waylandDisplay_(std::move(waylandDisplay)),
          callbacks_(std::move(callbacks)),
          seat_(queue, logind),
          repeat_(queue, [this](std::uint8_t code) { repeat(code); }) {}

    void setEnabled(bool enabled) override {
        if (!enabled) {
            plugging_ = nullptr;
            open_.clear();
            broken_.clear();
            sessionRepeats_ = nullptr;
            repeat_.stop();
            return;
        }
        if (!sessionRepeats_ && !waylandDisplay_.empty()) {
            sessionRepeats_ = std::make_unique<WaylandRepeatInfo>(
                queue_, waylandDisplay_, [this](const KeyRepeat::Settings& settings) {
                    kernelRepeats_ = false;
                    repeat_.setSettings(settings);
                });
        }
        if (!plugging_) {
            // Watch before the first search, so that a keyboard plugged in between is not missed.
            plugging_ = std::make_unique<FolderWatch>(
                queue_, folder_,
                [this](std::string_view name) { devicesChanged(std::string(name)); },
                FolderWatch::Report::namesAndPermissions);
        }
        openAll();
    }

private:
    struct OpenKeyboard {
        std::unique_ptr<Keyboard> keyboard;
        // Destroyed before the keyboard that it watches.
        std::unique_ptr<EpollMainQueue::Watch> watch;
    };

    void devicesChanged(const std::string& name) {
        if (name.empty()) {
            broken_.clear();
            openAll();
        } else if (name.starts_with("event")) {
            broken_.erase(name);
            if (access((folder_ + "/" + name).c_str(), R_OK) != 0 && errno == EACCES) {
                open_.erase(name);  // Another user's session is in the foreground.
            } else {
                openKeyboard(name);
            }
        }
    }

    void openAll() {
        for (const std::string& name : eventDevices(folder_)) {
            openKeyboard(name);
        }
    }

    void openKeyboard(const std::string& name) {
        const std::string path = folder_ + "/" + name;
        const auto broken = broken_.find(name);
        if (open_.contains(name) || (broken != broken_.end() && broken->second == fileAt(path))) {
            return;
        }
        auto keyboard = Keyboard::open(path);
        if (!keyboard) {
            return;
        }
        auto watch = queue_.watch(keyboard->descriptor(), [this, name, opened = keyboard.get()] {
            if (!opened->read([this](const KeyEvent& event) { handle(event); })) {
                closeFailed(name);
            }
        });
        open_.insert_or_assign(name, OpenKeyboard{std::move(keyboard), std::move(watch)});
    }

    void handle(const KeyEvent& event) {
        // Those who may always read the keyboards would hear another user's keys too.
        if (!seat_.isOurs()) {
            repeat_.stop();
        } else if (event.change == KeyEvent::Change::released) {
            repeat_.release(event.code);
        } else if (event.change == KeyEvent::Change::pressed) {
            callbacks_.onKeyDown(event.keyCode);
            repeat_.press(event.code);
        } else if (kernelRepeats_) {
            callbacks_.onKeyDown(event.keyCode);
        }
    }

    /// Reports a repeat as the session has it, if the key is still down.
    void repeat(std::uint8_t code) {
        const auto keyCode = virtualKeyCode(code);
        if (keyCode && seat_.isOurs() && std::ranges::any_of(open_, [code](const auto& open) {
                return open.second.keyboard->isDown(code);
            })) {
            callbacks_.onKeyDown(*keyCode);
        } else {
            repeat_.stop();
        }
    }

    /// Closes a keyboard that has failed and reports that. It is not opened again until the device
    /// changes or another one takes its name; otherwise it could open and fail without end.
    void closeFailed(const std::string& name) {
        const auto lost = open_.find(name);
        broken_.insert_or_assign(name, lost->second.keyboard->file());
        open_.erase(lost);
        callbacks_.onDisabled();
    }

    EpollMainQueue& queue_;
    const std::string folder_;
    const std::string waylandDisplay_;
    const KeyTapCallbacks callbacks_;
    ActiveSeat seat_;
    /// Until the session tells how it repeats keys, the kernel's own repeats count.
    bool kernelRepeats_ = true;
    KeyRepeat repeat_;
    std::unique_ptr<WaylandRepeatInfo> sessionRepeats_;
    std::map<std::string, OpenKeyboard> open_;
    std::map<std::string, ino_t> broken_;
    std::unique_ptr<FolderWatch> plugging_;
};

}  // namespace

EvdevKeySource::EvdevKeySource(EpollMainQueue& queue, std::string waylandDisplay,
                               std::string folder, ActiveSeat::Logind logind)
    : queue_(queue),
      waylandDisplay_(std::move(waylandDisplay)),
      folder_(std::move(folder)),
      logind_(std::move(logind)) {}

bool EvdevKeySource::trusted() {
    const std::vector<std::string> devices = eventDevices(folder_);
    const auto pathOf = [this](const std::string& name) { return folder_ + "/" + name; };
    if (std::ranges::any_of(devices, [&](const std::string& name) {
            return Keyboard::open(pathOf(name)) != nullptr;
        })) {
        return true;
    }
    // A wireless keyboard may be asleep. It is then not there, which is no lack of permission.
    return !devices.empty() && std::ranges::none_of(devices, [&](const std::string& name) {
        return access(pathOf(name).c_str(), R_OK) != 0 && isFullKeyboard(name);
    });
}

std::unique_ptr<KeyTap> EvdevKeySource::createTap(KeyTapCallbacks callbacks) {
    return trusted() ? std::make_unique<EvdevKeyTap>(queue_, folder_, waylandDisplay_, logind_,
                                                     std::move(callbacks))
                     : nullptr;
}

SourceReport EvdevKeySource::report() {
    const auto devices = eventDevices(folder_);
    const auto keyboards = std::ranges::count_if(devices, [this](const std::string& name) {
        return Keyboard::open(folder_ + "/" + name) != nullptr;
    });
    if (keyboards > 0) {
        return {.mechanism = "evdev, " + std::to_string(keyboards) +
                             (keyboards == 1 ? " keyboard" : " keyboards")};
    }
    if (devices.empty() || trusted()) {
        return {.mechanism = "evdev, no keyboard",
                .missing = "No keyboard is plugged in or awake.",
                .advice = "Press a key of a wireless keyboard, or plug one in."};
    }
    return {.mechanism = "evdev, not permitted",
            .missing = "The keyboards may not be read.",
            .advice = "Press \"How to Allow This\" in the dashboard, at Key Press."};
}

}  // namespace chimewerk
