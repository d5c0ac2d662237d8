// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/x11_app_launches.h"

#include <unistd.h>
#include <xcb/res.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "linux/links/x11_extension.h"

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

/// Returns the text of a property; empty if it is missing.
std::string readText(xcb_connection_t* server, xcb_get_property_cookie_t request) {
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(server, request, nullptr));
    if (!reply || reply->format != 8) {
        return "";
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

constinit X11Extension resources("X-Resource");

/// Returns whether the server tells the processes of its clients.
bool answersForProcesses(xcb_connection_t* server) {
    if (!resources.opcode(server)) {
        return false;
    }
    struct {
        xcb_res_query_version_request_t head;
        std::uint16_t fill;
    } query{};
    query.head.client_major = 1;
    query.head.client_minor = 2;
    const auto version = resources.ask<xcb_res_query_version_reply_t>(server, XCB_RES_QUERY_VERSION,
                                                                      X11Extension::bytesOf(query));
    return version && std::pair(version->server_major, version->server_minor) >=
                          std::pair<std::uint16_t, std::uint16_t>(1, 2);
}

/// Returns the name of this machine, without its domain.
std::string hostName() {
    std::array<char, 256> name{};
    gethostname(name.data(), name.size() - 1);
    const std::string_view full(name.data());
    return std::string(full.substr(0, full.find('.')));
}

}  // namespace

X11AppLaunches::X11AppLaunches(EpollMainQueue& queue, const std::string& display,
                               OnFirstWindow onFirstWindow, Seconds retryInterval)
    : onFirstWindow_(std::move(onFirstWindow)),
      host_(hostName()),
      firstWindows_(
          {.factsOf = [this](const auto& windows) { return factsOf(windows); },
           .isAlive = [this](FirstWindows::Owner owner) { return isAlive(owner); },
           .onFirstWindow = [this](auto owner, auto window) { announce(owner, window); }}),
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
        {"_NET_SUPPORTING_WM_CHECK", &Atoms::managerWindow},
        {"_NET_WM_PID", &Atoms::pid},
        {"WM_CLIENT_LEADER", &Atoms::leader},
        {"_NET_WM_WINDOW_TYPE", &Atoms::type},
        {"_NET_WM_WINDOW_TYPE_DOCK", &Atoms::dock},
        {"_NET_WM_WINDOW_TYPE_DESKTOP", &Atoms::desktop},
        {"_NET_WM_WINDOW_TYPE_NORMAL", &Atoms::normal},
        {"_KDE_NET_WM_WINDOW_TYPE_OVERRIDE", &Atoms::kdeOverride},
        {"_NET_WM_STATE", &Atoms::state},
        {"_NET_WM_STATE_SKIP_TASKBAR", &Atoms::skipTaskbar},
        {"_GTK_APPLICATION_ID", &Atoms::gtkApplication},
        {"UTF8_STRING", &Atoms::utf8}};
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
    knowsProcesses_ = answersForProcesses(server);
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

/// Returns the processes of the windows that a process of this machine has opened.
X11AppLaunches::Processes X11AppLaunches::processesOf(
    const std::vector<FirstWindows::Window>& windows) const {
    Processes processes;
    if (!knowsProcesses_ || windows.empty()) {
        return processes;
    }
    // The head of the request, then pairs of a window and of what is asked about it.
    Values wanted{0, static_cast<std::uint32_t>(windows.size())};
    for (const auto window : windows) {
        wanted.insert(wanted.end(), {window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
    }
    const auto reply = resources.ask<xcb_res_query_client_ids_reply_t>(
        link_.server(), XCB_RES_QUERY_CLIENT_IDS, std::as_writable_bytes(std::span(wanted)));
    if (!reply) {
        return processes;
    }
    // The server answers with the part of the window ID that all windows of one client share.
    const auto ownPart = xcb_get_setup(link_.server())->resource_id_mask;
    std::map<std::uint32_t, std::uint32_t> processOf;
    // Window, what was asked, the number of bytes of the answer, and the answer.
    constexpr std::size_t kHead = 3;
    std::span rest(reinterpret_cast<const std::uint32_t*>(reply.get() + 1), reply->length);
    while (rest.size() > kHead) {
        if (rest[2] > 0) {
            processOf[rest[0] & ~ownPart] = rest[kHead];
        }
        rest = rest.subspan(std::min(kHead + rest[2] / sizeof rest[0], rest.size()));
    }
    for (const auto window : windows) {
        if (const auto known = processOf.find(window & ~ownPart); known != processOf.end()) {
            processes[window] = known->second;
        }
    }
    return processes;
}

/// Takes two round trips for all windows together, and more for each whose process is unknown.
std::vector<FirstWindows::Facts> X11AppLaunches::factsOf(
    const std::vector<FirstWindows::Window>& windows) const {
    struct Request {
        xcb_get_property_cookie_t pid, machine, type, transientFor, state;
    };
    constexpr std::uint32_t kMostValues = 64;
    std::vector<Request> requests;
    requests.reserve(windows.size());
    for (const auto window : windows) {
        const auto request = [&](xcb_atom_t property, xcb_atom_t type) {
            return requestProperty(link_.server(), window, property, type, kMostValues);
        };
        requests.push_back({.pid = request(atoms_.pid, XCB_ATOM_CARDINAL),
                            .machine = request(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING),
                            .type = request(atoms_.type, XCB_ATOM_ATOM),
                            .transientFor = request(XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW),
                            .state = request(atoms_.state, XCB_ATOM_ATOM)});
    }
    const Processes processes = processesOf(windows);
    std::vector<FirstWindows::Facts> facts;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const auto pid = readProperty(link_.server(), requests[i].pid);
        const std::string machine = readText(link_.server(), requests[i].machine);
        const auto types = readProperty(link_.server(), requests[i].type);
        const auto transientFor = readProperty(link_.server(), requests[i].transientFor);
        const auto states = readProperty(link_.server(), requests[i].state);
        if (!pid || !types || !transientFor || !states) {
            facts.emplace_back();
            continue;
        }
        // A program on another machine is connected by a process of this one.
        const bool isHere = machine.empty() || machine.substr(0, machine.find('.')) == host_;
        const auto known = processes.find(windows[i]);
        std::optional<FirstWindows::Owner> owner;
        if (isHere && known != processes.end()) {
            owner = kIsProcess | known->second;
        } else if (isHere && !pid->empty()) {
            owner = kIsProcess | pid->front();
        } else {
            owner = ownerWithoutPid(windows[i]);
        }
        facts.push_back({.owner = owner, .role = roleOf(*types, *states, !transientFor->empty())});
    }
    return facts;
}

/// `types` begins with the preferred type. KDE's mark for windows without a frame is none.
FirstWindows::Role X11AppLaunches::roleOf(const Values& types, const Values& states,
                                          bool isTransient) const {
    const auto type =
        std::ranges::find_if(types, [this](auto each) { return each != atoms_.kdeOverride; });
    if (type != types.end() && (*type == atoms_.dock || *type == atoms_.desktop)) {
        return FirstWindows::Role::desktop;
    }
    const bool isNormal = type == types.end() || *type == atoms_.normal;
    const bool isListed = std::ranges::find(states, atoms_.skipTaskbar) == states.end();
    return isNormal && isListed && !isTransient ? FirstWindows::Role::application
                                                : FirstWindows::Role::secondary;
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

/// Returns the process of the window manager; 0 if it is unknown.
pid_t X11AppLaunches::windowManager() const {
    const auto window =
        readProperty(link_.server(), requestProperty(link_.server(), link_.root(),
                                                     atoms_.managerWindow, XCB_ATOM_WINDOW, 1))
            .value_or(Values());
    const Processes processes = processesOf(window);
    return processes.empty() ? 0 : static_cast<pid_t>(processes.begin()->second);
}

/// Returns the ID that the toolkit gives the application, else the class of the window.
std::string X11AppLaunches::applicationOf(FirstWindows::Window window) const {
    constexpr std::uint32_t kMostWords = 64;
    const auto id =
        requestProperty(link_.server(), window, atoms_.gtkApplication, atoms_.utf8, kMostWords);
    const auto names =
        requestProperty(link_.server(), window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, kMostWords);
    std::string application = readText(link_.server(), id);
    // Two texts, each with a zero behind it; the second is the class.
    const std::string both = readText(link_.server(), names);
    if (!application.empty()) {
        return application;
    }
    const std::size_t zero = both.find('\0');
    return zero == std::string::npos ? both : std::string(both.c_str() + zero + 1);
}

void X11AppLaunches::announce(FirstWindows::Owner owner, FirstWindows::Window window) const {
    LaunchSign sign{.found = LaunchCandidate::Found::byWindow,
                    .application = applicationOf(window),
                    .windowManager = windowManager()};
    if ((owner & kIsProcess) != 0) {
        sign.processes.push_back(static_cast<pid_t>(owner & ~kIsProcess));
    }
    onFirstWindow_(std::move(sign));
}

}  // namespace chimewerk
