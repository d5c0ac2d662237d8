// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>
#include <wayland-server.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"

namespace chimewerk {

/// A Wayland compositor on the queue of the test; what it offers, derived classes add.
class FakeCompositor {
public:
    FakeCompositor(EpollMainQueue& queue, const std::string& path) : display_(wl_display_create()) {
        EXPECT_EQ(wl_display_add_socket(display_, path.c_str()), 0);
        auto* const loop = wl_display_get_event_loop(display_);
        watch_ = queue.watch(wl_event_loop_get_fd(loop), [this, loop] {
            wl_event_loop_dispatch(loop, 0);
            flush();
        });
    }
    FakeCompositor(const FakeCompositor&) = delete;
    FakeCompositor& operator=(const FakeCompositor&) = delete;
    ~FakeCompositor() {
        watch_ = nullptr;
        wl_display_destroy_clients(display_);
        wl_display_destroy(display_);
    }

    bool hasClient() const { return wl_list_empty(wl_display_get_client_list(display_)) == 0; }

protected:
    wl_display* display() const { return display_; }
    void flush() const { wl_display_flush_clients(display_); }

private:
    wl_display* const display_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

/// Has a seat, with a keyboard while one is plugged in.
class FakeSeatCompositor : public FakeCompositor {
public:
    FakeSeatCompositor(EpollMainQueue& queue, const std::string& path)
        : FakeCompositor(queue, path) {
        wl_global_create(display(), &wl_seat_interface, 8, this, &bindSeat);
    }

    /// As sway, KWin and Mutter do when a keyboard is plugged in, or the settings change.
    void setRepeats(std::int32_t rate, std::int32_t delay) {
        rate_ = rate;
        delay_ = delay;
        if (keyboard_ == nullptr) {
            wl_seat_send_capabilities(seat_, WL_SEAT_CAPABILITY_KEYBOARD);
        } else {
            wl_keyboard_send_repeat_info(keyboard_, rate_, delay_);
        }
        flush();
    }
    void unplug() {
        wl_seat_send_capabilities(seat_, 0);
        flush();
    }
    bool hasSeat() const { return seat_ != nullptr; }
    bool hasKeyboard() const { return keyboard_ != nullptr; }

private:
    static FakeSeatCompositor& self(wl_resource* resource) {
        return *static_cast<FakeSeatCompositor*>(wl_resource_get_user_data(resource));
    }
    static void bindSeat(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
        static const auto kRequests = [] {
            struct wl_seat_interface requests {};
            requests.get_keyboard = &getKeyboard;
            return requests;
        }();
        auto& compositor = *static_cast<FakeSeatCompositor*>(data);
        compositor.seat_ =
            wl_resource_create(client, &wl_seat_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(compositor.seat_, &kRequests, data,
                                       [](wl_resource* seat) { self(seat).seat_ = nullptr; });
        wl_seat_send_capabilities(compositor.seat_, 0);
    }
    static void getKeyboard(wl_client* client, wl_resource* seat, std::uint32_t id) {
        static const struct wl_keyboard_interface kRequests {
            .release = [](wl_client*, wl_resource* keyboard) { wl_resource_destroy(keyboard); }
        };
        auto& compositor = self(seat);
        compositor.keyboard_ =
            wl_resource_create(client, &wl_keyboard_interface, wl_resource_get_version(seat), id);
        wl_resource_set_implementation(
            compositor.keyboard_, &kRequests, &compositor,
            [](wl_resource* keyboard) { self(keyboard).keyboard_ = nullptr; });
        wl_keyboard_send_repeat_info(compositor.keyboard_, compositor.rate_, compositor.delay_);
    }

    wl_resource* seat_ = nullptr;
    wl_resource* keyboard_ = nullptr;
    std::int32_t rate_ = 0;
    std::int32_t delay_ = 0;
};

}  // namespace chimewerk
