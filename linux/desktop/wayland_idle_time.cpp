// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/wayland_idle_time.h"

#include <string_view>

#include "ext-idle-notify-v1-client.h"
#include "idle-client.h"
#include "linux/links/wayland_link.h"

namespace chimewerk {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kTold{5000};

}  // namespace

class WaylandIdleTime::Notice {
public:
    Notice(EpollMainQueue& queue, const std::string& display, Seconds retryInterval)
        : link_(queue, display,
                {.onOffer = [this](auto name, auto interface,
                                   auto /*version*/) { bind(name, interface); },
                 .onOffered = [this] { return ask(); },
                 .onClose = [this] { forget(); }},
                retryInterval) {
        link_.keepOpen();
    }

    bool isUntold() const { return isUntold_; }

    std::optional<milliseconds> idle() const {
        if (!notification_ && !timeout_) {
            return std::nullopt;
        }
        return since_ ? std::chrono::duration_cast<milliseconds>(steady_clock::now() - *since_)
                      : milliseconds(0);
    }

private:
    void bind(std::uint32_t name, std::string_view interface) {
        if (interface == wl_seat_interface.name && !seat_) {
            seat_.reset(link_.bind<wl_seat>(name, wl_seat_interface, 1));
        } else if (interface == ext_idle_notifier_v1_interface.name) {
            notifier_.reset(
                link_.bind<ext_idle_notifier_v1>(name, ext_idle_notifier_v1_interface, 1));
        } else if (interface == org_kde_kwin_idle_interface.name) {
            kdeIdle_.reset(link_.bind<org_kde_kwin_idle>(name, org_kde_kwin_idle_interface, 1));
        }
    }

    /// Returns false if the compositor does not tell.
    bool ask() {
        if (seat_ && notifier_) {
            static constexpr ext_idle_notification_v1_listener kListener{.idled = &begin,
                                                                         .resumed = &end};
            notification_.reset(ext_idle_notifier_v1_get_idle_notification(
                notifier_.get(), kTold.count(), seat_.get()));
            ext_idle_notification_v1_add_listener(notification_.get(), &kListener, this);
        } else if (seat_ && kdeIdle_) {
            static constexpr org_kde_kwin_idle_timeout_listener kListener{.idle = &begin,
                                                                          .resumed = &end};
            timeout_.reset(
                org_kde_kwin_idle_get_idle_timeout(kdeIdle_.get(), seat_.get(), kTold.count()));
            org_kde_kwin_idle_timeout_add_listener(timeout_.get(), &kListener, this);
        } else {
            isUntold_ = true;
        }
        return !isUntold_;
    }

    template <typename Proxy>
    static void begin(void* notice, Proxy* /*from*/) {
        static_cast<Notice*>(notice)->since_ = steady_clock::now() - kTold;
    }
    template <typename Proxy>
    static void end(void* notice, Proxy* /*from*/) {
        static_cast<Notice*>(notice)->since_.reset();
    }

    void forget() {
        since_.reset();
        timeout_ = nullptr;
        notification_ = nullptr;
        kdeIdle_ = nullptr;
        notifier_ = nullptr;
        seat_ = nullptr;
    }

    bool isUntold_ = false;
    /// The last touch, while that is at least 5 s ago.
    std::optional<steady_clock::time_point> since_;
    WaylandProxy<wl_seat> seat_;
    WaylandProxy<ext_idle_notifier_v1> notifier_;
    WaylandProxy<ext_idle_notification_v1> notification_;
    // The same from compositors before the protocol above, such as sway 1.7.
    WaylandProxy<org_kde_kwin_idle> kdeIdle_;
    WaylandProxy<org_kde_kwin_idle_timeout> timeout_;
    // Destroyed before what lives on it, which it has destroyed then.
    WaylandLink link_;
};

WaylandIdleTime::WaylandIdleTime(EpollMainQueue& queue, const std::string& display,
                                 Seconds retryInterval)
    : notice_(std::make_unique<Notice>(queue, display, retryInterval)) {}

WaylandIdleTime::~WaylandIdleTime() = default;

bool WaylandIdleTime::isUntold() const {
    return notice_->isUntold();
}

std::optional<milliseconds> WaylandIdleTime::idle() const {
    return notice_->idle();
}

}  // namespace chimewerk
