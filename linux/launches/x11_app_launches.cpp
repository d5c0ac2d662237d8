// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/x11_app_launches.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <iterator>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

// An owner is a process ID with this bit set, or a window ID if the process ID is unknown.
constexpr FirstWindows::Owner kIsProcess = FirstWindows::Owner{1} << 32;

xcb_get_property_cookie_t requestProperty(xcb_connection_t* server, xcb_window_t window,
                                          xcb_atom_t property, xcb_atom_t type,
                                          std::uint32_t mostWords) {
    return xcb_get_property(server, 0, window, property, type, 0, mostWords);
}

using Values = std::vector<std::uint32_t>;

/// Returns the 32-bit values of a property: empty if it is missing or has another format, none if
/// the window is gone.
std::optional<Values> readProperty(xcb_connection_t* server, xcb_get_property_cookie_t request) {
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(server, request, nullptr));
    if (!reply) {
        return std::nullopt;
    }
    if (reply->format != 32) {
        return Values();
    }
    const auto* const values =
        static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return Values(values, values + reply->value_len);
}

}  // namespace

X11AppLaunches::X11AppLaunches(EpollMainQueue& queue, const std::string& display,
                               Callbacks callbacks, Seconds retryInterval)
    : callbacks_(std::move(callbacks)),
      firstWindows_({.factsOf = [this](const auto& windows) { return factsOf(windows); },
                     .isAlive = [this](FirstWindows::Owner owner) { return isAlive(owner); },
                     .onFirstWindow = [this](FirstWindows::Owner owner) { announce(owner); }}),
      link_(queue, display,
            {.onOpen = [this](auto* server, auto root) { return open(server, root); },
             .onEvent =
                 [this](const xcb_generic_event_t& event) {
                     if ((event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY &&
                         reinterpret_cast<const xcb_property_notify_event_t&>(event).atom ==
                             atoms_.clientList) {
                         firstWindows_.update(windows());
                     }
                 }},
            retryInterval) {
    link_.keepOpen();
}

bool X11AppLaunches::open(xcb_connection_t* server, xcb_window_t root) {
    const std::pair<std::string_view, xcb_atom_t Atoms::*> names[] = {
        {"_NET_CLIENT_LIST", &Atoms::clientList},
        {"_NET_WM_PID", &Atoms::pid},
        {"WM_CLIENT_LEADER", &Atoms::leader},
        {"_NET_WM_WINDOW_TYPE", &Atoms::type},
        {"_NET_WM_WINDOW_TYPE_DOCK", &Atoms::dock},
        {"_NET_WM_WINDOW_TYPE_DESKTOP", &Atoms::desktop}};
    std::array<xcb_intern_atom_cookie_t, std::size(names)> requests{};
    std::ranges::transform(names, requests.begin(), [&](const auto& name) {
        return xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.first.size()),
                               name.first.data());
    });
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const XcbReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(server, requests.at(i), nullptr));
        if (!reply) {
            return false;
        }
        atoms_.*names[i].second = reply->atom;
    }
    const std::uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(server, root, XCB_CW_EVENT_MASK, &wanted);
    firstWindows_.begin(windows());
    return xcb_connection_has_error(server) == 0;
}

std::vector<FirstWindows::Window> X11AppLaunches::windows() const {
    constexpr std::uint32_t kMostWindows = 65536;
    return readProperty(link_.server(),
                        requestProperty(link_.server(), link_.root(), atoms_.clientList,
                                        XCB_ATOM_WINDOW, kMostWindows))
        .value_or(Values());
}

/// Takes one round trip for all windows together, and more for each that does not give its
/// process ID.
std::vector<FirstWindows::Facts> X11AppLaunches::factsOf(
    const std::vector<FirstWindows::Window>& windows) const {
    struct Request {
        xcb_get_property_cookie_t pid, type;
    };
    std::vector<Request> requests;
    requests.reserve(windows.size());
    for (const auto window : windows) {
        requests.push_back(
            {.pid = requestProperty(link_.server(), window, atoms_.pid, XCB_ATOM_CARDINAL, 1),
             .type = requestProperty(link_.server(), window, atoms_.type, XCB_ATOM_ATOM, 8)});
    }
    std::vector<FirstWindows::Facts> facts;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto pid = readProperty(link_.server(), requests[i].pid);
        const auto types = readProperty(link_.server(), requests[i].type);
        if (!pid || !types) {
            facts.emplace_back();
            continue;
        }
        facts.push_back({.owner = pid->empty() ? ownerWithoutPid(windows[i])
                                               : std::optional(kIsProcess | pid->front()),
                         .isForUser = std::ranges::find(*types, atoms_.dock) == types->end() &&
                                      std::ranges::find(*types, atoms_.desktop) == types->end()});
    }
    return facts;
}

/// Returns the process ID that the leader window gives, else the leader itself; without a leader,
/// the part of the window ID that all windows of one client share.
std::optional<FirstWindows::Owner> X11AppLaunches::ownerWithoutPid(
    FirstWindows::Window window) const {
    const auto leader = readProperty(
        link_.server(), requestProperty(link_.server(), window, atoms_.leader, XCB_ATOM_WINDOW, 1));
    if (!leader) {
        return std::nullopt;
    }
    if (leader->empty()) {
        return window & ~xcb_get_setup(link_.server())->resource_id_mask;
    }
    const auto pid = readProperty(
        link_.server(),
        requestProperty(link_.server(), leader->front(), atoms_.pid, XCB_ATOM_CARDINAL, 1));
    return pid.value_or(Values()).empty() ? FirstWindows::Owner{leader->front()}
                                          : kIsProcess | pid->front();
}

bool X11AppLaunches::isAlive(FirstWindows::Owner owner) const {
    if ((owner & kIsProcess) != 0) {
        return kill(static_cast<pid_t>(owner & ~kIsProcess), 0) == 0 || errno != ESRCH;
    }
    const XcbReply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        link_.server(), xcb_get_window_attributes(link_.server(), static_cast<xcb_window_t>(owner)),
        nullptr));
    return reply != nullptr;
}

void X11AppLaunches::announce(FirstWindows::Owner owner) const {
    const bool isProcess = (owner & kIsProcess) != 0;
    const auto process = static_cast<pid_t>(owner & ~kIsProcess);
    if (!isProcess || (process != getpid() && !callbacks_.isReportedElsewhere(process))) {
        callbacks_.onLaunch();
    }
}

}  // namespace chimewerk
