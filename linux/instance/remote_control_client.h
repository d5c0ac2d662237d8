// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "linux/bus/bus_link.h"
#include "platform/remote_control.h"

namespace chimewerk {

/// The program that runs in this session, controlled from another process. Never starts it. Each
/// request waits for the answer, for some seconds at most; without one it is refused.
class RemoteControlClient final : public RemoteControl {
public:
    /// `id` is the program's name on the session bus.
    explicit RemoteControlClient(std::string id);

    /// Whether the last request was refused because the program does not run.
    bool foundNobody() const { return foundNobody_; }

    Refusal play(const std::string& event) override;
    Refusal setEnabled(const std::string& event, bool enabled) override;
    Refusal setTheme(const std::string& theme) override;
    Refusal setMuted(bool muted) override;
    Refusal toggleMuted(bool& isMutedNow) override;
    Refusal readState(RemoteState& state) override;
    Refusal check(std::vector<RemoteCheck>& checks) override;

private:
    template <typename... Arguments>
    Refusal call(const char* interface, const char* method, BusMessage& reply, const char* types,
                 Arguments... arguments);
    template <typename... Arguments>
    Refusal request(const char* method, const char* types, Arguments... arguments);
    template <typename Element>
    Refusal readList(const char* method, Element (*readElement)(sd_bus_message*),
                     std::vector<Element>& list);
    Refusal send(sd_bus_message* call, BusMessage& reply);

    const std::string id_;
    std::unique_ptr<sd_bus, UnrefBus> bus_;
    bool foundNobody_ = false;
};

}  // namespace chimewerk
