// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/plasma_app_launches.h"

#include <wayland-client.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <string_view>
#include <utility>

#include "linux/base/file_descriptor.h"
#include "linux/base/local_socket.h"
#include "plasma-window-management-client.h"
#include "platform/delayed_call.h"

namespace chimewerk {

namespace {

/// The first version that names a window's parent. Later ones tell of each move of a window, which
/// nobody needs here.
constexpr std::uint32_t kVersion = 5;

std::string socketPath(const std::string& display) {
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    return display.starts_with('/') || folder == nullptr ? display
                                                         : std::string(folder) + "/" + display;
}

template <auto destroy>
struct Destroy {
    template <typename Proxy>
    void operator()(Proxy* proxy) const {
        destroy(proxy);
    }
};
using Display = std::unique_ptr<wl_display, Destroy<wl_display_disconnect>>;
using Registry = std::unique_ptr<wl_registry, Destroy<wl_registry_destroy>>;
using Answer = std::unique_ptr<wl_callback, Destroy<wl_callback_destroy>>;
using Management = std::unique_ptr<org_kde_plasma_window_management,
                                   Destroy<org_kde_plasma_window_management_destroy>>;
using WindowProxy = std::unique_ptr<org_kde_plasma_window, Destroy<org_kde_plasma_window_destroy>>;

}  // namespace

class PlasmaAppLaunches::Link {
public:
    Link(EpollMainQueue& queue, const std::string& display,
         ToplevelLaunches::OnFirstWindow onFirstWindow, Seconds retryInterval)
        : queue_(queue),
          path_(socketPath(display)),
          toplevels_(std::move(onFirstWindow)),
          retry_(queue, retryInterval, [this] { open(); }) {
        open();
    }

    bool isHeard() const { return management_ != nullptr; }

private:
    struct Window {
        Link& link;
        FirstWindows::Window id;
        Toplevel toplevel = {};
        /// All that the compositor says of it has arrived.
        bool isComplete = false;
        WindowProxy proxy = nullptr;
    };

    void open();
    void close();
    void receive();
    void askForAnswer();
    void proceed();
    void bind(std::uint32_t name);
    void addWindow(FirstWindows::Window id);
    void complete(Window& window);
    void remove(FirstWindows::Window id);
    static const wl_registry_listener& registryListener();
    // Take events by name: KWin sends some of later versions of the protocol, too, and the library
    // ends the program for one that a table of functions leaves out.
    static int handleManagement(const void* implementation, void* proxy, std::uint32_t number,
                                const wl_message* event, wl_argument* values);
    static int handleWindow(const void* implementation, void* proxy, std::uint32_t number,
                            const wl_message* event, wl_argument* values);

    EpollMainQueue& queue_;
    const std::string path_;
    ToplevelLaunches toplevels_;
    Display display_;
    // Destroyed before the display.
    Registry registry_;
    Management management_;
    Answer answer_;
    std::map<FirstWindows::Window, Window> windows_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    /// How often the compositor has answered that it has handled all requests.
    int answers_ = 0;
    DelayedCall retry_;
};

void PlasmaAppLaunches::Link::open() {
    FileDescriptor socket = connectLocally(path_);
    if (socket) {
        display_.reset(wl_display_connect_to_fd(socket.release()));
    }
    if (!display_) {
        retry_.schedule();
        return;
    }
    registry_.reset(wl_display_get_registry(display_.get()));
    wl_registry_add_listener(registry_.get(), &registryListener(), this);
    askForAnswer();
    wl_display_flush(display_.get());
    watch_ = queue_.watch(wl_display_get_fd(display_.get()), [this] { receive(); });
}

void PlasmaAppLaunches::Link::close() {
    watch_ = nullptr;
    windows_.clear();
    answer_ = nullptr;
    management_ = nullptr;
    registry_ = nullptr;
    display_ = nullptr;
    answers_ = 0;
}

void PlasmaAppLaunches::Link::receive() {
    // Nothing is pending: what has been read was dispatched.
    const bool isRead =
        wl_display_prepare_read(display_.get()) == 0 && wl_display_read_events(display_.get()) == 0;
    if (!isRead || wl_display_dispatch_pending(display_.get()) < 0) {
        close();
        retry_.schedule();
    } else if (answers_ > 0 && !management_) {
        // It would not appear later.
        close();
    } else {
        wl_display_flush(display_.get());
    }
}

void PlasmaAppLaunches::Link::askForAnswer() {
    static constexpr wl_callback_listener kListener{
        .done = [](void* link, wl_callback* /*answer*/, std::uint32_t /*data*/) {
            static_cast<Link*>(link)->proceed();
        }};
    answer_.reset(wl_display_sync(display_.get()));
    wl_callback_add_listener(answer_.get(), &kListener, this);
}

/// With the first answer the interfaces are known, with the second the windows that are open, and
/// with the third what there is to say of these.
void PlasmaAppLaunches::Link::proceed() {
    constexpr int kAll = 3;
    if (++answers_ < kAll) {
        askForAnswer();
        return;
    }
    answer_ = nullptr;
    ToplevelLaunches::Toplevels open;
    for (const auto& [id, window] : windows_) {
        if (window.isComplete) {
            open.emplace(id, window.toplevel);
        }
    }
    toplevels_.begin(peerOf(wl_display_get_fd(display_.get())), std::move(open));
}

const wl_registry_listener& PlasmaAppLaunches::Link::registryListener() {
    static constexpr wl_registry_listener kListener{
        .global =
            [](void* link, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
               std::uint32_t version) {
                if (std::strcmp(interface, org_kde_plasma_window_management_interface.name) == 0 &&
                    version >= kVersion) {
                    static_cast<Link*>(link)->bind(name);
                }
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    return kListener;
}

void PlasmaAppLaunches::Link::bind(std::uint32_t name) {
    management_.reset(static_cast<org_kde_plasma_window_management*>(wl_registry_bind(
        registry_.get(), name, &org_kde_plasma_window_management_interface, kVersion)));
    wl_proxy_add_dispatcher(reinterpret_cast<wl_proxy*>(management_.get()), &handleManagement,
                            nullptr, this);
}

int PlasmaAppLaunches::Link::handleManagement(const void* /*implementation*/, void* proxy,
                                              std::uint32_t /*number*/, const wl_message* event,
                                              wl_argument* values) {
    if (std::strcmp(event->name, "window") == 0) {
        static_cast<Link*>(wl_proxy_get_user_data(static_cast<wl_proxy*>(proxy)))
            ->addWindow(values[0].u);
    }
    return 0;
}

void PlasmaAppLaunches::Link::addWindow(FirstWindows::Window id) {
    windows_.erase(id);
    Window& window = windows_.try_emplace(id, Window{.link = *this, .id = id}).first->second;
    window.proxy.reset(org_kde_plasma_window_management_get_window(management_.get(), id));
    wl_proxy_add_dispatcher(reinterpret_cast<wl_proxy*>(window.proxy.get()), &handleWindow, nullptr,
                            &window);
}

int PlasmaAppLaunches::Link::handleWindow(const void* /*implementation*/, void* proxy,
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
        window.link.complete(window);
    } else if (name == "unmapped") {
        window.link.remove(window.id);
    }
    return 0;
}

void PlasmaAppLaunches::Link::complete(Window& window) {
    window.isComplete = true;
    if (!answer_) {
        toplevels_.add(window.id, window.toplevel);
    }
}

void PlasmaAppLaunches::Link::remove(FirstWindows::Window id) {
    windows_.erase(id);
    toplevels_.remove(id);
}

PlasmaAppLaunches::PlasmaAppLaunches(EpollMainQueue& queue, const std::string& display,
                                     ToplevelLaunches::OnFirstWindow onFirstWindow,
                                     Seconds retryInterval)
    : link_(std::make_unique<Link>(queue, display, std::move(onFirstWindow), retryInterval)) {}

PlasmaAppLaunches::~PlasmaAppLaunches() = default;

bool PlasmaAppLaunches::isHeard() const {
    return link_->isHeard();
}

}  // namespace chimewerk
