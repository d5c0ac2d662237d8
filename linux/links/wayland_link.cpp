// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/wayland_link.h"

#include <cstdlib>
#include <utility>

#include "linux/base/file_descriptor.h"
#include "linux/base/local_socket.h"

namespace chimewerk {

namespace {

std::string socketPath(const std::string& display) {
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return display.starts_with('/') || folder == nullptr ? display
                                                         : std::string(folder) + "/" + display;
}

}  // namespace

WaylandLink::WaylandLink(EpollMainQueue& queue, const std::string& display, Callbacks callbacks,
                         Seconds interval)
    : queue_(queue),
      path_(socketPath(display)),
      callbacks_(std::move(callbacks)),
      retry_(queue, interval, [this] {
          if (wanted_) {
              keepOpen();
          }
      }) {}

WaylandLink::~WaylandLink() {
    close();
}

void WaylandLink::keepOpen() {
    wanted_ = true;
    if (display_) {
        return;
    }
    if (FileDescriptor socket = connectLocally(path_)) {
        display_.reset(wl_display_connect_to_fd(socket.release()));
    }
    if (!display_) {
        retry_.schedule();
        return;
    }
    registry_.reset(wl_display_get_registry(display_.get()));
    wl_registry_add_listener(registry_.get(), &registryListener(), this);
    askForAnswer([this] {
        // What it does not offer now would not appear later.
        if (!callbacks_.onOffered()) {
            wanted_ = false;
        }
    });
    wl_display_flush(display_.get());
    watch_ = queue_.watch(wl_display_get_fd(display_.get()), [this] { receive(); });
}

void WaylandLink::close() {
    wanted_ = false;
    disconnect();
}

void WaylandLink::disconnect() {
    if (!display_) {
        return;
    }
    callbacks_.onClose();
    watch_ = nullptr;
    onAnswer_ = nullptr;
    answer_ = nullptr;
    registry_ = nullptr;
    display_ = nullptr;
}

void WaylandLink::receive() {
    // Nothing is pending: what has been read was dispatched.
    const bool isRead =
        wl_display_prepare_read(display_.get()) == 0 && wl_display_read_events(display_.get()) == 0;
    if (!isRead || wl_display_dispatch_pending(display_.get()) < 0) {
        disconnect();
        retry_.schedule();
    } else if (!wanted_) {
        disconnect();
    } else {
        wl_display_flush(display_.get());
    }
}

void WaylandLink::askForAnswer(std::function<void()> onAnswer) {
    static constexpr wl_callback_listener kListener{
        .done = [](void* data, wl_callback* /*answer*/, std::uint32_t /*time*/) {
            auto& link = *static_cast<WaylandLink*>(data);
            link.answer_ = nullptr;
            std::exchange(link.onAnswer_, nullptr)();
        }};
    onAnswer_ = std::move(onAnswer);
    answer_.reset(wl_display_sync(display_.get()));
    wl_callback_add_listener(answer_.get(), &kListener, this);
}

pid_t WaylandLink::compositor() const {
    return peerOf(wl_display_get_fd(display_.get()));
}

const wl_registry_listener& WaylandLink::registryListener() {
    static constexpr wl_registry_listener kListener{
        .global =
            [](void* link, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
               std::uint32_t version) {
                static_cast<WaylandLink*>(link)->callbacks_.onOffer(name, interface, version);
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    return kListener;
}

}  // namespace chimewerk
