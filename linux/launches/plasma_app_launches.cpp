// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/plasma_app_launches.h"

#include <cstring>
#include <map>
#include <string_view>
#include <utility>

#include "linux/links/wayland_link.h"
#include "plasma-window-management-client.h"

namespace chimewerk {

namespace {

/// The first version that names a window's parent. Later ones tell of each move of a window, which
/// nobody needs here.
constexpr std::uint32_t kVersion = 5;

struct DestroyWindow {
    void operator()(org_kde_plasma_window* window) const { org_kde_plasma_window_destroy(window); }
};

}  // namespace

class PlasmaAppLaunches::List {
public:
    List(EpollMainQueue& queue, const std::string& display,
         ToplevelLaunches::OnFirstWindow onFirstWindow, Seconds retryInterval)
        : toplevels_(std::move(onFirstWindow)),
          link_(queue, display,
                {.onOffer = [this](auto name, auto interface,
                                   auto version) { bind(name, interface, version); },
                 .onOffered = [this] { return begin(); },
                 .onClose = [this] { forget(); }},
                retryInterval) {
        link_.keepOpen();
    }

    bool isHeard() const { return management_ != nullptr; }

private:
    struct Window {
        List& list;
        FirstWindows::Window id;
        Toplevel toplevel = {};
        /// All that the compositor says of it has arrived.
        bool isComplete = false;
        std::unique_ptr<org_kde_plasma_window, DestroyWindow> proxy = nullptr;
    };

    void bind(std::uint32_t name, std::string_view interface, std::uint32_t version);
    bool begin();
    void takeOpenWindows();
    void forget();
    void addWindow(FirstWindows::Window id);
    void complete(Window& window);
    void remove(FirstWindows::Window id);
    // Take events by name: KWin sends some of later versions of the protocol, too, and the library
    // ends the program for one that a table of functions leaves out.
    static int handleManagement(const void* implementation, void* proxy, std::uint32_t number,
                                const wl_message* event, wl_argument* values);
    static int handleWindow(const void* implementation, void* proxy, std::uint32_t number,
                            const wl_message* event, wl_argument* values);

    ToplevelLaunches toplevels_;
    WaylandProxy<org_kde_plasma_window_management> management_;
    std::map<FirstWindows::Window, Window> windows_;
    /// The windows that were open before are known.
    bool hasBegun_ = false;
    // Destroyed before what lives on it, which it has destroyed then.
    WaylandLink link_;
};

void PlasmaAppLaunches::List::bind(std::uint32_t name, std::string_view interface,
                                   std::uint32_t version) {
    if (interface != org_kde_plasma_window_management_interface.name || version < kVersion) {
        return;
    }
    management_.reset(link_.bind<org_kde_plasma_window_management>(
        name, org_kde_plasma_window_management_interface, kVersion));
    wl_proxy_add_dispatcher(reinterpret_cast<wl_proxy*>(management_.get()), &handleManagement,
                            nullptr, this);
}

/// With the next answer the windows that are open are known, and with the one after it what there
/// is to say of these.
bool PlasmaAppLaunches::List::begin() {
    if (management_) {
        link_.askForAnswer([this] { link_.askForAnswer([this] { takeOpenWindows(); }); });
    }
    return isHeard();
}

void PlasmaAppLaunches::List::takeOpenWindows() {
    ToplevelLaunches::Toplevels open;
    for (const auto& [id, window] : windows_) {
        if (window.isComplete) {
            open.emplace(id, window.toplevel);
        }
    }
    toplevels_.begin(link_.compositor(), std::move(open));
    hasBegun_ = true;
}

void PlasmaAppLaunches::List::forget() {
    hasBegun_ = false;
    windows_.clear();
    management_ = nullptr;
}

int PlasmaAppLaunches::List::handleManagement(const void* /*implementation*/, void* proxy,
                                              std::uint32_t /*number*/, const wl_message* event,
                                              wl_argument* values) {
    if (std::strcmp(event->name, "window") == 0) {
        static_cast<List*>(wl_proxy_get_user_data(static_cast<wl_proxy*>(proxy)))
            ->addWindow(values[0].u);
    }
    return 0;
}

void PlasmaAppLaunches::List::addWindow(FirstWindows::Window id) {
    windows_.erase(id);
    Window& window = windows_.try_emplace(id, Window{.list = *this, .id = id}).first->second;
    window.proxy.reset(org_kde_plasma_window_management_get_window(management_.get(), id));
    wl_proxy_add_dispatcher(reinterpret_cast<wl_proxy*>(window.proxy.get()), &handleWindow, nullptr,
                            &window);
}

int PlasmaAppLaunches::List::handleWindow(const void* /*implementation*/, void* proxy,
                                          std::uint32_t /*number*/, const wl_message* event,
                                          wl_argument* values) {
    auto& window = *static_cast<Window*>(wl_proxy_get_user_data(static_cast<wl_proxy*>(proxy)));
    const std::string_view name = event->name;
    if (name == "pid_changed") {
        window.toplevel.process = static_cast<pid_t>(values[0].u);
    } else if (name == "app_id_changed") {
        window.toplevel.application = values[0].s;
    } else if ((name == "state_changed" &&
                (values[0].u & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR) != 0) ||
               (name == "parent_window" && values[0].o != nullptr)) {
        window.toplevel.role = FirstWindows::Role::secondary;
    } else if (name == "initial_state") {
        window.list.complete(window);
    } else if (name == "unmapped") {
        window.list.remove(window.id);
    }
    return 0;
}

void PlasmaAppLaunches::List::complete(Window& window) {
    window.isComplete = true;
    if (hasBegun_) {
        toplevels_.add(window.id, window.toplevel);
    }
}

void PlasmaAppLaunches::List::remove(FirstWindows::Window id) {
    windows_.erase(id);
    toplevels_.remove(id);
}

PlasmaAppLaunches::PlasmaAppLaunches(EpollMainQueue& queue, const std::string& display,
                                     ToplevelLaunches::OnFirstWindow onFirstWindow,
                                     Seconds retryInterval)
    : list_(std::make_unique<List>(queue, display, std::move(onFirstWindow), retryInterval)) {}

PlasmaAppLaunches::~PlasmaAppLaunches() = default;

bool PlasmaAppLaunches::isHeard() const {
    return list_->isHeard();
}

}  // namespace chimewerk
