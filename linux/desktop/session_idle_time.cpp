// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/session_idle_time.h"

#include <array>
#include <cstdint>
#include <utility>

namespace chimewerk {

namespace {

/// A method that returns milliseconds.
struct Desktop {
    const char* name;
    const char* path;
    const char* interface;
    const char* method;
    /// The type of the result.
    char type;
};

constexpr std::array<Desktop, 2> kDesktops{{{.name = "org.gnome.Mutter.IdleMonitor",
                                             .path = "/org/gnome/Mutter/IdleMonitor/Core",
                                             .interface = "org.gnome.Mutter.IdleMonitor",
                                             .method = "GetIdletime",
                                             .type = SD_BUS_TYPE_UINT64},
                                            {.name = "org.kde.screensaver",
                                             .path = "/ScreenSaver",
                                             .interface = "org.freedesktop.ScreenSaver",
                                             .method = "GetSessionIdleTime",
                                             .type = SD_BUS_TYPE_UINT32}}};

constexpr std::uint64_t kTimeoutMicroseconds = 500'000;

}  // namespace

SessionIdleTime::SessionIdleTime(EpollMainQueue& queue, const SessionEnvironment& environment,
                                 Seconds retryInterval)
    : queue_(queue),
      waylandDisplay_(environment.isX11() ? "" : environment.waylandDisplay),
      retryInterval_(retryInterval),
      link_(queue, sd_bus_open_user,
            {.onOpen = [this](sd_bus* bus) { bus_ = bus; },
             .onLost =
                 [this] {
                     request_ = nullptr;
                     bus_ = nullptr;
                     if (answer_) {
                         std::exchange(answer_, nullptr)(std::nullopt);
                     }
                 }},
            retryInterval) {}

void SessionIdleTime::ask(Answer answer) {
    if (!waylandDisplay_.empty() && !wayland_) {
        wayland_ = std::make_unique<WaylandIdleTime>(queue_, waylandDisplay_, retryInterval_);
    }
    if (wayland_ && !wayland_->isUntold()) {
        answer(wayland_->idle());
        return;
    }
    link_.keepOpen();
    answer_ = std::move(answer);
    next_ = 0;
    askNext();
}

void SessionIdleTime::askNext() {
    request_ = nullptr;
    while (bus_ != nullptr && next_ < kDesktops.size()) {
        const Desktop& desktop = kDesktops.at(next_);
        sd_bus_message* call = nullptr;
        if (sd_bus_message_new_method_call(bus_, &call, desktop.name, desktop.path,
                                           desktop.interface, desktop.method) >= 0) {
            const BusMessage owned(call);
            sd_bus_message_set_auto_start(call, 0);
            sd_bus_slot* request = nullptr;
            if (sd_bus_call_async(bus_, &request, call, callMember<&SessionIdleTime::onReply>, this,
                                  kTimeoutMicroseconds) >= 0) {
                request_.reset(request);
                return;
            }
        }
        ++next_;
    }
    std::exchange(answer_, nullptr)(std::nullopt);
}

void SessionIdleTime::onReply(sd_bus_message* reply) {
    std::uint64_t wide = 0;
    std::uint32_t narrow = 0;
    const char type = kDesktops.at(next_).type;
    void* const value = type == SD_BUS_TYPE_UINT64 ? static_cast<void*>(&wide) : &narrow;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read_basic(reply, type, value) > 0) {
        request_ = nullptr;
        std::exchange(answer_, nullptr)(
            std::chrono::milliseconds(type == SD_BUS_TYPE_UINT64 ? wide : narrow));
        return;
    }
    ++next_;
    askNext();
}

}  // namespace chimewerk
