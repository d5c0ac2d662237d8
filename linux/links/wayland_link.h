// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"
#include "platform/delayed_call.h"

namespace chimewerk {

/// Forgets a Wayland object, without a word to the compositor.
struct ForgetProxy {
    template <typename Proxy>
    void operator()(Proxy* proxy) const {
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(proxy));
    }
};
template <typename Proxy>
using WaylandProxy = std::unique_ptr<Proxy, ForgetProxy>;

/// A connection to a Wayland compositor that is opened again after the compositor has restarted:
/// while it is away, the link retries at intervals. Main thread only; must not be destroyed from
/// within its callbacks.
class WaylandLink {
public:
    struct Callbacks {
        /// The compositor offers this interface, up to this version. May `bind()` it.
        std::function<void(std::uint32_t name, std::string_view interface, std::uint32_t version)>
            onOffer;
        /// The compositor has named all that it offers. Returns false if that is not what is
        /// needed, which closes the link for good.
        std::function<bool()> onOffered;
        /// The connection is about to be closed. Destroys what lives on it.
        std::function<void()> onClose;
    };

    /// `display` has the form of $WAYLAND_DISPLAY. The queue must outlive the link. `interval` is
    /// the time between two attempts.
    WaylandLink(EpollMainQueue& queue, const std::string& display, Callbacks callbacks,
                Seconds interval = kRetryInterval);
    ~WaylandLink();
    WaylandLink(const WaylandLink&) = delete;
    WaylandLink& operator=(const WaylandLink&) = delete;

    /// Opens the connection now or as soon as the compositor is there, and again after each loss.
    void keepOpen();
    void close();

    /// Returns a new object for an interface that the compositor has offered.
    template <typename Proxy>
    Proxy* bind(std::uint32_t name, const wl_interface& interface, std::uint32_t version) {
        return static_cast<Proxy*>(wl_registry_bind(registry_.get(), name, &interface, version));
    }
    /// Calls `onAnswer` when the compositor has handled all requests made so far. A new call drops
    /// the last one.
    void askForAnswer(std::function<void()> onAnswer);

    /// Returns the compositor's process; 0 if it is unknown.
    pid_t compositor() const;

private:
    struct Disconnect {
        void operator()(wl_display* display) const { wl_display_disconnect(display); }
    };

    void disconnect();
    void receive();
    static const wl_registry_listener& registryListener();

    EpollMainQueue& queue_;
    const std::string path_;
    const Callbacks callbacks_;
    std::unique_ptr<wl_display, Disconnect> display_;
    // Destroyed before the display.
    WaylandProxy<wl_registry> registry_;
    WaylandProxy<wl_callback> answer_;
    std::function<void()> onAnswer_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    bool wanted_ = false;
    DelayedCall retry_;
};

}  // namespace chimewerk
