// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/evdev/wayland_repeat_info.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

namespace {

/// The first version that tells of repeats.
constexpr std::uint32_t kVersion = 4;

/// All keys that type; the locks do not repeat in any layout.
std::array<std::uint8_t, 32> repeatingKeys() {
    std::array<std::uint8_t, 32> keys{};
    keys.fill(0xFF);
    for (const unsigned lock : {KEY_NUMLOCK, KEY_SCROLLLOCK}) {
        keys.at(lock / 8) &= static_cast<std::uint8_t>(~(1U << lock % 8));
    }
    return keys;
}

}  // namespace

WaylandRepeatInfo::WaylandRepeatInfo(EpollMainQueue& queue, const std::string& display,
                                     OnSettings onSettings, Seconds retryInterval)
    : onSettings_(std::move(onSettings)),
      link_(queue, display,
            {.onOffer = [this](auto name, auto interface,
                               auto version) { bind(name, interface, version); },
             .onOffered = [this] { return seat_ != nullptr; },
             .onClose =
                 [this] {
                     keyboard_ = nullptr;
                     seat_ = nullptr;
                 }},
            retryInterval) {
    link_.keepOpen();
}

void WaylandRepeatInfo::bind(std::uint32_t name, std::string_view interface,
                             std::uint32_t version) {
    if (interface == wl_seat_interface.name && version >= kVersion && !seat_) {
        seat_.reset(link_.bind<wl_seat>(name, wl_seat_interface, kVersion));
        wl_seat_add_listener(seat_.get(), &seatListener(), this);
    }
}

/// A seat has a keyboard only while one is plugged in. The settings stay those of the last one.
void WaylandRepeatInfo::setCapabilities(std::uint32_t capabilities) {
    if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0) {
        if (auto gone = std::exchange(keyboard_, nullptr)) {
            wl_keyboard_release(gone.release());
        }
    } else if (!keyboard_) {
        keyboard_.reset(wl_seat_get_keyboard(seat_.get()));
        wl_keyboard_add_listener(keyboard_.get(), &keyboardListener(), this);
    }
}

/// `rate` is in repeats per second, 0 for none; `delay` is in milliseconds.
void WaylandRepeatInfo::setRepeats(std::int32_t rate, std::int32_t delay) {
    using std::chrono::milliseconds;
    KeyRepeat::Settings settings;
    if (rate > 0) {
        settings = {.delay = milliseconds(std::max(delay, 1)),
                    .interval = milliseconds(std::max(1000 / rate, 1)),
                    .keys = repeatingKeys()};
    }
    onSettings_(settings);
}

const wl_seat_listener& WaylandRepeatInfo::seatListener() {
    static constexpr wl_seat_listener kListener{
        .capabilities =
            [](void* self, wl_seat*, std::uint32_t capabilities) {
                static_cast<WaylandRepeatInfo*>(self)->setCapabilities(capabilities);
            },
        .name = [](void*, wl_seat*, const char*) {}};
    return kListener;
}

/// Only the last event concerns a client without windows; the first one hands over a descriptor.
const wl_keyboard_listener& WaylandRepeatInfo::keyboardListener() {
    static constexpr wl_keyboard_listener kListener{
        .keymap = [](void*, wl_keyboard*, std::uint32_t /*format*/, std::int32_t file,
                     std::uint32_t /*size*/) { const FileDescriptor unused(file); },
        .enter = [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
        .leave = [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
        .key = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                  std::uint32_t) {},
        .modifiers = [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t,
                        std::uint32_t, std::uint32_t) {},
        .repeat_info =
            [](void* self, wl_keyboard*, std::int32_t rate, std::int32_t delay) {
                static_cast<WaylandRepeatInfo*>(self)->setRepeats(rate, delay);
            }};
    return kListener;
}

}  // namespace chimewerk
