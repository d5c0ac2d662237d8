// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/instance/single_instance.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr const char* kInterface = "org.freedesktop.Application";

// The keys of the platform data.
constexpr const char* kActivationToken = "activation-token";
constexpr const char* kStartupId = "desktop-startup-id";

constexpr std::array<std::string_view, 6> kActions{
    SingleInstance::kOpenDashboard,  SingleInstance::kOpenHelp, SingleInstance::kAllowMicrophone,
    SingleInstance::kDenyMicrophone, SingleInstance::kQuit,     SingleInstance::kKeepQuiet};

std::string environmentText(const char* name) {
    const char* const text = std::getenv(name);
    return text == nullptr ? "" : text;
}

std::uint64_t microsecondsUntil(steady_clock::time_point moment) {
    const auto left = std::chrono::ceil<microseconds>(moment - steady_clock::now()).count();
    return left > 0 ? static_cast<std::uint64_t>(left) : 0;
}

/// Waits until the bus connection is ready. Returns false on an error or a timeout.
bool waitUntilReady(sd_bus* bus, microseconds patience) {
    const auto deadline = steady_clock::now() + patience;
    while (sd_bus_is_ready(bus) <= 0) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) {
            return false;
        }
        const std::uint64_t left = microsecondsUntil(deadline);
        if (processed == 0) {
            const int waited = left == 0 ? -ETIMEDOUT : sd_bus_wait(bus, left);
            if (waited < 0 && waited != -EINTR) {
                return false;
            }
        }
    }
    return true;
}

/// Reads the platform data that come next in the call and returns their activation token; empty if
/// they hold none.
std::string readToken(sd_bus_message* call) {
    std::string token;
    if (sd_bus_message_enter_container(call, 'a', "{sv}") < 0) {
        return token;
    }
    while (sd_bus_message_enter_container(call, 'e', "sv") > 0) {
        const char* key = nullptr;
        const char* text = nullptr;
        sd_bus_message_read(call, "s", &key);
        if (sd_bus_message_verify_type(call, 'v', "s") > 0) {
            sd_bus_message_read(call, "v", "s", &text);
            if (std::string_view(key) == kActivationToken ||
                (std::string_view(key) == kStartupId && token.empty())) {
                token = text;
            }
        } else {
            sd_bus_message_skip(call, "v");
        }
        sd_bus_message_exit_container(call);
    }
    sd_bus_message_exit_container(call);
    return token;
}

/// Appends the token unless it is empty or not printable ASCII: the bus would disconnect the sender
/// of such text.
void appendToken(sd_bus_message* call, const char* key, const std::string& token) {
    const auto isPlain = [](char letter) { return letter >= ' ' && letter <= '~'; };
    if (!token.empty() && std::ranges::all_of(token, isPlain)) {
        sd_bus_message_append(call, "{sv}", key, "s", token.c_str());
    }
}

/// What became of a call to the owner of the name.
enum class Answer {
    given,
    /// Nobody owns the name, or its owner left without answering.
    nobody,
    /// The owner is there, but does not answer.
    none,
};

/// Sends the call and waits.
Answer ask(sd_bus* bus, sd_bus_message* call, std::uint64_t patience) {
    sd_bus_error error{};
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call(bus, call, patience, &error, &reply);
    const BusMessage owned(reply);
    const bool nobody =
        sd_bus_error_has_names(&error, SD_BUS_ERROR_SERVICE_UNKNOWN, SD_BUS_ERROR_NAME_HAS_NO_OWNER,
                               SD_BUS_ERROR_NO_REPLY) != 0;
    sd_bus_error_free(&error);
    if (nobody) {
        return Answer::nobody;
    }
    return result == -ETIMEDOUT ? Answer::none : Answer::given;
}

}  // namespace

LaunchRequest LaunchRequest::ofThisProcess(std::string action) {
    return {.action = std::move(action),
            .activationToken = environmentText("XDG_ACTIVATION_TOKEN"),
            .startupId = environmentText("DESKTOP_STARTUP_ID")};
}

std::string SingleInstance::objectPath(const std::string& id) {
    std::string path = "/" + id;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return path;
}

const sd_bus_vtable SingleInstance::kApplication[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_NAMES("Activate", "a{sv}", SD_BUS_PARAM(platform_data), "", "",
                             callMember<&SingleInstance::onActivate>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES("Open", "asa{sv}", SD_BUS_PARAM(uris) SD_BUS_PARAM(platform_data), "",
                             "", callMember<&SingleInstance::onOpen>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES(
        "ActivateAction", "sava{sv}",
        SD_BUS_PARAM(action_name) SD_BUS_PARAM(parameter) SD_BUS_PARAM(platform_data), "", "",
        callMember<&SingleInstance::onActivateAction>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

SingleInstance::SingleInstance(EpollMainQueue& queue, std::string id, Callbacks callbacks,
                               Timing timing)
    : queue_(queue),
      id_(std::move(id)),
      path_(objectPath(id_)),
      callbacks_(std::move(callbacks)),
      timing_(timing),
      link_(
          queue,
          [this](sd_bus** bus) {
              *bus = claimed_.release();
              return *bus != nullptr ? 0 : sd_bus_open_user(bus);
          },
          {.onOpen = [this](sd_bus* bus) { serve(bus); }}, timing.retryInterval) {}

SingleInstance::Outcome SingleInstance::claim(const LaunchRequest& request) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) >= 0) {
        claimed_.reset(bus);
        sd_bus_set_method_call_timeout(bus,
                                       static_cast<std::uint64_t>(timing_.busPatience.count()));
    }
    Outcome outcome = Outcome::noBus;
    if (claimed_ && waitUntilReady(bus, timing_.busPatience)) {
        outcome = takeNameOrAsk(bus, request);
    }
    if (outcome != Outcome::first) {
        claimed_ = nullptr;
    }
    if (outcome == Outcome::first || outcome == Outcome::noBus) {
        link_.keepOpen();
    }
    return outcome;
}

/// Claims the name or passes the request to its owner, which has registered the object before it
/// claimed the name.
SingleInstance::Outcome SingleInstance::takeNameOrAsk(sd_bus* bus, const LaunchRequest& request) {
    addObject(bus);
    const auto deadline = steady_clock::now() + timing_.instancePatience;
    while (true) {
        const int taken = sd_bus_request_name(bus, id_.c_str(), 0);
        if (taken >= 0) {
            return Outcome::first;
        }
        const BusMessage call = taken == -EEXIST ? makeCall(bus, request) : nullptr;
        if (!call) {
            return Outcome::noBus;
        }
        // That instance was quitting: its name is free, or another launch has taken it.
        const std::uint64_t patience = microsecondsUntil(deadline);
        const Answer answer = patience == 0 ? Answer::none : ask(bus, call.get(), patience);
        if (answer != Answer::nobody) {
            return answer == Answer::given ? Outcome::alreadyRunning : Outcome::notAnswering;
        }
    }
}

/// Makes the call that passes the request on. Returns null if that fails.
BusMessage SingleInstance::makeCall(sd_bus* bus, const LaunchRequest& request) const {
    const bool isAction = !request.action.empty();
    sd_bus_message* call = nullptr;
    sd_bus_message_new_method_call(bus, &call, id_.c_str(), path_.c_str(), kInterface,
                                   isAction ? "ActivateAction" : "Activate");
    BusMessage owned(call);
    if (call == nullptr ||
        (isAction && sd_bus_message_append(call, "sav", request.action.c_str(), 0) < 0) ||
        sd_bus_message_open_container(call, 'a', "{sv}") < 0) {
        return nullptr;
    }
    sd_bus_message_set_auto_start(call, 0);
    appendToken(call, kActivationToken, request.activationToken);
    appendToken(call, kStartupId, request.startupId);
    return sd_bus_message_close_container(call) >= 0 ? std::move(owned) : nullptr;
}

void SingleInstance::addObject(sd_bus* bus) {
    const int added =
        sd_bus_add_object_vtable(bus, nullptr, path_.c_str(), kInterface, kApplication, this);
    if (added >= 0 && callbacks_.addInterfaces) {
        callbacks_.addInterfaces(bus, path_);
    }
}

/// Registers the object and requests the name. On the connection that `claim()` used, both are in
/// place and this changes nothing. The empty reply handler keeps sd-bus from closing the connection
/// when another instance owns the name.
void SingleInstance::serve(sd_bus* bus) {
    addObject(bus);
    sd_bus_request_name_async(
        bus, nullptr, id_.c_str(), 0, [](sd_bus_message*, void*, sd_bus_error*) { return 0; },
        nullptr);
}

/// Posts `onActivate` with the token from the platform data, which come next in the call.
int SingleInstance::activate(sd_bus_message* call) {
    queue_.post(lifeline_.guard([this, token = readToken(call)] { callbacks_.onActivate(token); }));
    return sd_bus_reply_method_return(call, "");
}

int SingleInstance::onActivate(sd_bus_message* call, sd_bus_error* /*error*/) {
    return activate(call);
}

/// The program has no documents, so "Open" only shows it.
int SingleInstance::onOpen(sd_bus_message* call, sd_bus_error* /*error*/) {
    sd_bus_message_skip(call, "as");
    return activate(call);
}

int SingleInstance::onActivateAction(sd_bus_message* call, sd_bus_error* error) {
    const char* action = nullptr;
    if (sd_bus_message_read(call, "s", &action) < 0 ||
        std::ranges::find(kActions, std::string_view(action)) == kActions.end()) {
        return sd_bus_error_set_const(error, SD_BUS_ERROR_INVALID_ARGS, "There is no such action.");
    }
    sd_bus_message_skip(call, "av");
    queue_.post(lifeline_.guard([this, action = std::string(action), token = readToken(call)] {
        callbacks_.onAction(action, token);
    }));
    return sd_bus_reply_method_return(call, "");
}

}  // namespace chimewerk
