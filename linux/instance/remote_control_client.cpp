// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/instance/remote_control_client.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include "linux/instance/remote_control_service.h"
#include "linux/instance/single_instance.h"

namespace chimewerk {

namespace {

constexpr const char* kOtherVersion =
    "The Chimewerk that is running is of another version. Quit it and start it again.";
constexpr std::uint64_t kPatience = 5'000'000;  // Microseconds.

// Each reads the variant that comes next if it has the type, and returns whether it has.

bool readText(sd_bus_message* message, std::string& text) {
    const char* read = nullptr;
    if (sd_bus_message_verify_type(message, 'v', "s") <= 0 ||
        sd_bus_message_read(message, "v", "s", &read) <= 0) {
        return false;
    }
    text = read;
    return true;
}

bool readFlag(sd_bus_message* message, bool& flag) {
    int read = 0;
    if (sd_bus_message_verify_type(message, 'v', "b") <= 0 ||
        sd_bus_message_read(message, "v", "b", &read) <= 0) {
        return false;
    }
    flag = read != 0;
    return true;
}

template <typename Number>
bool readNumber(sd_bus_message* message, const char* type, Number& number) {
    return sd_bus_message_verify_type(message, 'v', type) > 0 &&
           sd_bus_message_read(message, "v", type, &number) > 0;
}

bool readTexts(sd_bus_message* message, std::vector<std::string>& texts) {
    if (sd_bus_message_verify_type(message, 'v', "as") <= 0) {
        return false;
    }
    sd_bus_message_enter_container(message, 'v', "as");
    sd_bus_message_enter_container(message, 'a', "s");
    for (const char* text = nullptr; sd_bus_message_read(message, "s", &text) > 0;) {
        texts.emplace_back(text);
    }
    sd_bus_message_exit_container(message);
    sd_bus_message_exit_container(message);
    return true;
}

/// Reads a dictionary of variants: calls `read` with each key, and skips the value if that returns
/// false.
template <typename Read>
void readDictionary(sd_bus_message* message, Read read) {
    sd_bus_message_enter_container(message, 'a', "{sv}");
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const char* key = "";
        sd_bus_message_read(message, "s", &key);
        if (!read(std::string_view(key))) {
            sd_bus_message_skip(message, "v");
        }
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
}

RemoteEvent readEvent(sd_bus_message* message) {
    RemoteEvent event;
    readDictionary(message, [&](std::string_view key) {
        return (key == "id" && readText(message, event.id)) ||
               (key == "label" && readText(message, event.label)) ||
               (key == "enabled" && readFlag(message, event.isEnabled)) ||
               (key == "volume" && readNumber(message, "d", event.volume)) ||
               (key == "count" && readNumber(message, "x", event.count)) ||
               (key == "sound" && readText(message, event.sound));
    });
    return event;
}

RemoteCheck readCheck(sd_bus_message* message) {
    RemoteCheck check;
    SourceReport& source = check.source;
    readDictionary(message, [&](std::string_view key) {
        double seconds = 0;
        if (key == "seconds-ago" && readNumber(message, "d", seconds)) {
            check.secondsAgo = seconds;
            return true;
        }
        return (key == "id" && readText(message, check.id)) ||
               (key == "label" && readText(message, check.label)) ||
               (key == "mechanism" && readText(message, source.mechanism)) ||
               (key == "missing" && readText(message, source.missing)) ||
               (key == "advice" && readText(message, source.advice)) ||
               (key == "enabled" && readFlag(message, check.isEnabled)) ||
               (key == "lacks-hardware" && readFlag(message, source.lacksHardware));
    });
    return check;
}

}  // namespace

RemoteControlClient::RemoteControlClient(std::string id) : id_(std::move(id)) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) >= 0) {
        bus_.reset(bus);
        sd_bus_set_method_call_timeout(bus, kPatience);
    }
}

template <typename... Arguments>
RemoteControl::Refusal RemoteControlClient::call(const char* interface, const char* method,
                                                 BusMessage& reply, const char* types,
                                                 Arguments... arguments) {
    const std::string path = SingleInstance::objectPath(id_);
    sd_bus_message* made = nullptr;
    foundNobody_ = !bus_ || sd_bus_message_new_method_call(bus_.get(), &made, id_.c_str(),
                                                           path.c_str(), interface, method) < 0;
    if (foundNobody_) {
        return "Chimewerk is not running.";
    }
    const BusMessage owned(made);
    sd_bus_message_set_auto_start(made, 0);
    if (sd_bus_message_append(made, types, arguments...) < 0) {
        return "The name is no valid text.";
    }
    return send(made, reply);
}

template <typename... Arguments>
RemoteControl::Refusal RemoteControlClient::request(const char* method, const char* types,
                                                    Arguments... arguments) {
    BusMessage reply;
    return call(kRemoteControlInterface, method, reply, types, arguments...);
}

RemoteControl::Refusal RemoteControlClient::send(sd_bus_message* call, BusMessage& reply) {
    sd_bus_error error{};
    sd_bus_message* received = nullptr;
    const int result = sd_bus_call(bus_.get(), call, kPatience, &error, &received);
    reply.reset(received);
    Refusal refusal;
    if (result == -ETIMEDOUT) {
        refusal = "Chimewerk is running, but does not answer.";
    } else if (sd_bus_error_has_name(&error, SD_BUS_ERROR_INVALID_ARGS) != 0) {
        refusal = error.message;
    } else if (sd_bus_error_has_names(&error, SD_BUS_ERROR_UNKNOWN_METHOD,
                                      SD_BUS_ERROR_UNKNOWN_INTERFACE) != 0) {
        refusal = kOtherVersion;
    } else if (result < 0) {
        foundNobody_ = true;
        refusal = "Chimewerk is not running.";
    }
    sd_bus_error_free(&error);
    return refusal;
}

RemoteControl::Refusal RemoteControlClient::play(const std::string& event) {
    return request("Play", "s", event.c_str());
}

RemoteControl::Refusal RemoteControlClient::setEnabled(const std::string& event, bool enabled) {
    return request("SetEnabled", "sb", event.c_str(), static_cast<int>(enabled));
}

RemoteControl::Refusal RemoteControlClient::setTheme(const std::string& theme) {
    return request("SetTheme", "s", theme.c_str());
}

RemoteControl::Refusal RemoteControlClient::setMuted(bool muted) {
    return request("SetMuted", "b", static_cast<int>(muted));
}

RemoteControl::Refusal RemoteControlClient::toggleMuted(bool& isMutedNow) {
    BusMessage reply;
    Refusal refusal = call(kRemoteControlInterface, "ToggleMuted", reply, "");
    int muted = 0;
    if (!refusal && sd_bus_message_read(reply.get(), "b", &muted) > 0) {
        isMutedNow = muted != 0;
    }
    return refusal;
}

template <typename Element>
RemoteControl::Refusal RemoteControlClient::readList(const char* method,
                                                     Element (*readElement)(sd_bus_message*),
                                                     std::vector<Element>& list) {
    BusMessage reply;
    if (Refusal refusal = call(kRemoteControlInterface, method, reply, "")) {
        return refusal;
    }
    if (sd_bus_message_has_signature(reply.get(), "aa{sv}") <= 0) {
        return kOtherVersion;
    }
    sd_bus_message_enter_container(reply.get(), 'a', "a{sv}");
    while (sd_bus_message_at_end(reply.get(), 0) == 0) {
        list.push_back(readElement(reply.get()));
    }
    return std::nullopt;
}

RemoteControl::Refusal RemoteControlClient::check(std::vector<RemoteCheck>& checks) {
    return readList("Check", readCheck, checks);
}

RemoteControl::Refusal RemoteControlClient::readState(RemoteState& state) {
    if (Refusal refusal = readList("ListEvents", readEvent, state.events)) {
        return refusal;
    }
    BusMessage properties;
    Refusal refusal =
        call("org.freedesktop.DBus.Properties", "GetAll", properties, "s", kRemoteControlInterface);
    if (!refusal) {
        readDictionary(properties.get(), [&](std::string_view key) {
            return (key == "Muted" && readFlag(properties.get(), state.isMuted)) ||
                   (key == "Theme" && readText(properties.get(), state.theme)) ||
                   (key == "Themes" && readTexts(properties.get(), state.themes));
        });
    }
    return refusal;
}

}  // namespace chimewerk
