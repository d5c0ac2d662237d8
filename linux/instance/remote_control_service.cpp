// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/instance/remote_control_service.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/byte_text.h"

namespace chimewerk {

namespace {

/// Returns text as the bus takes it: UTF-8 without NUL.
std::string busText(std::string bytes) {
    std::string text = textFromBytes(std::move(bytes));
    std::ranges::replace(text, '\0', '?');
    return text;
}

void answer(sd_bus_message* call, const RemoteControl::Refusal& refusal) {
    if (refusal) {
        sd_bus_reply_method_errorf(call, SD_BUS_ERROR_INVALID_ARGS, "%s",
                                   busText(*refusal).c_str());
    } else {
        sd_bus_reply_method_return(call, "");
    }
}

void appendEvent(sd_bus_message* reply, const RemoteEvent& event) {
    sd_bus_message_append(reply, "a{sv}", 6,                                  //
                          "id", "s", event.id.c_str(),                        //
                          "label", "s", event.label.c_str(),                  //
                          "enabled", "b", static_cast<int>(event.isEnabled),  //
                          "volume", "d", event.volume,                        //
                          "count", "x", event.count,                          //
                          "sound", "s", busText(event.sound).c_str());
}

void appendCheck(sd_bus_message* reply, const RemoteCheck& check) {
    sd_bus_message_open_container(reply, 'a', "{sv}");
    for (const auto& [key, text] : {std::pair{"id", &check.id},
                                    {"label", &check.label},
                                    {"mechanism", &check.source.mechanism},
                                    {"missing", &check.source.missing},
                                    {"advice", &check.source.advice}}) {
        sd_bus_message_append(reply, "{sv}", key, "s", busText(*text).c_str());
    }
    for (const auto& [key, flag] :
         {std::pair{"enabled", check.isEnabled}, {"lacks-hardware", check.source.lacksHardware}}) {
        sd_bus_message_append(reply, "{sv}", key, "b", static_cast<int>(flag));
    }
    if (check.secondsAgo) {
        sd_bus_message_append(reply, "{sv}", "seconds-ago", "d", *check.secondsAgo);
    }
    sd_bus_message_close_container(reply);
}

/// Answers with a list of dictionaries, each of which `append` makes of one element.
template <typename Element>
void answerWithList(sd_bus_message* call, const std::vector<Element>& list,
                    void (*append)(sd_bus_message*, const Element&)) {
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_return(call, &made) < 0) {
        return;
    }
    const BusMessage reply(made);
    sd_bus_message_open_container(made, 'a', "a{sv}");
    for (const Element& element : list) {
        append(made, element);
    }
    sd_bus_message_close_container(made);
    sd_bus_send(nullptr, made, nullptr);
}

}  // namespace

const sd_bus_vtable RemoteControlService::kInterface[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD_WITH_NAMES("Play", "s", SD_BUS_PARAM(event), "", "",
                             callMember<&RemoteControlService::later<&RemoteControlService::play>>,
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES(
        "SetEnabled", "sb", SD_BUS_PARAM(event) SD_BUS_PARAM(enabled), "", "",
        callMember<&RemoteControlService::later<&RemoteControlService::setEnabled>>,
        SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES(
        "SetTheme", "s", SD_BUS_PARAM(theme), "", "",
        callMember<&RemoteControlService::later<&RemoteControlService::setTheme>>,
        SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES(
        "SetMuted", "b", SD_BUS_PARAM(muted), "", "",
        callMember<&RemoteControlService::later<&RemoteControlService::setMuted>>,
        SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES(
        "ToggleMuted", "", "", "b", SD_BUS_PARAM(muted),
        callMember<&RemoteControlService::later<&RemoteControlService::toggleMuted>>,
        SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES(
        "ListEvents", "", "", "aa{sv}", SD_BUS_PARAM(events),
        callMember<&RemoteControlService::later<&RemoteControlService::listEvents>>,
        SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD_WITH_NAMES("Check", "", "", "aa{sv}", SD_BUS_PARAM(checks),
                             callMember<&RemoteControlService::later<&RemoteControlService::check>>,
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Muted", "b", readProperty, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
    SD_BUS_PROPERTY("Theme", "s", readProperty, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
    SD_BUS_PROPERTY("Themes", "as", readProperty, 0, 0),
    SD_BUS_VTABLE_END,
};

void RemoteControlService::addTo(sd_bus* bus, const std::string& path) {
    bus_.reset(sd_bus_ref(bus));
    path_ = path;
    sd_bus_add_object_vtable(bus, nullptr, path.c_str(), kRemoteControlInterface, kInterface, this);
}

void RemoteControlService::announce(const char* property) {
    if (bus_) {
        sd_bus_emit_properties_changed(bus_.get(), path_.c_str(), kRemoteControlInterface, property,
                                       nullptr);
    }
}

/// Answers the call in a job of the queue.
template <void (RemoteControlService::*answer)(sd_bus_message*)>
int RemoteControlService::later(sd_bus_message* call, sd_bus_error* /*error*/) {
    const std::shared_ptr<sd_bus_message> kept(sd_bus_message_ref(call), UnrefBusMessage());
    queue_.post(lifeline_.guard([this, kept] { (this->*answer)(kept.get()); }));
    return 1;
}

// The bus library has checked the types of the arguments by the interface's table.

void RemoteControlService::play(sd_bus_message* call) {
    const char* event = "";
    sd_bus_message_read(call, "s", &event);
    answer(call, control_->play(event));
}

void RemoteControlService::setEnabled(sd_bus_message* call) {
    const char* event = "";
    int enabled = 0;
    sd_bus_message_read(call, "sb", &event, &enabled);
    answer(call, control_->setEnabled(event, enabled != 0));
}

void RemoteControlService::setTheme(sd_bus_message* call) {
    const char* theme = "";
    sd_bus_message_read(call, "s", &theme);
    answer(call, control_->setTheme(theme));
}

void RemoteControlService::setMuted(sd_bus_message* call) {
    int muted = 0;
    sd_bus_message_read(call, "b", &muted);
    answer(call, control_->setMuted(muted != 0));
}

void RemoteControlService::toggleMuted(sd_bus_message* call) {
    bool isMuted = false;
    control_->toggleMuted(isMuted);
    sd_bus_reply_method_return(call, "b", static_cast<int>(isMuted));
}

void RemoteControlService::listEvents(sd_bus_message* call) {
    RemoteState state;
    control_->readState(state);
    answerWithList(call, state.events, appendEvent);
}

void RemoteControlService::check(sd_bus_message* call) {
    std::vector<RemoteCheck> checks;
    control_->check(checks);
    answerWithList(call, checks, appendCheck);
}

int RemoteControlService::readProperty(sd_bus* /*bus*/, const char* /*path*/,
                                       const char* /*interface*/, const char* property,
                                       sd_bus_message* reply, void* user, sd_bus_error* /*error*/) {
    RemoteState state;
    static_cast<RemoteControlService*>(user)->control_->readState(state);
    if (std::string_view(property) == "Muted") {
        return sd_bus_message_append(reply, "b", static_cast<int>(state.isMuted));
    }
    if (std::string_view(property) == "Theme") {
        return sd_bus_message_append(reply, "s", busText(state.theme).c_str());
    }
    sd_bus_message_open_container(reply, 'a', "s");
    for (const std::string& theme : state.themes) {
        sd_bus_message_append(reply, "s", busText(theme).c_str());
    }
    return sd_bus_message_close_container(reply);
}

}  // namespace chimewerk
