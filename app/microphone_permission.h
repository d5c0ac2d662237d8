// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "monitors/microphone.h"
#include "platform/defaults_store.h"

namespace chimewerk {

/// A microphone that needs the user's permission, which is kept with the settings. The desktop has
/// no such permission of its own for programs of the system. Main thread only.
class MicrophonePermission final : public Microphone {
public:
    /// The settings key: true if the user has allowed it, false if not, absent before the answer.
    static constexpr char kAllowedKey[] = "ChimewerkMicrophoneAllowed";

    /// The arguments must outlive the object.
    MicrophonePermission(Microphone& microphone, DefaultsStore& defaults)
        : microphone_(microphone), defaults_(defaults) {}

    Authorization authorization() override;
    /// Keeps the request until `answer()`, with which somebody else passes on what the user says.
    void requestAccess(std::function<void(bool granted)> answered) override {
        answered_ = std::move(answered);
    }
    std::unique_ptr<AudioEngine> makeEngine() override { return microphone_.makeEngine(); }

    /// Whether a request waits for the user's answer.
    bool isRequested() const { return answered_ != nullptr; }
    /// Stores the user's first or later answer, and passes it on to the request that waits.
    void answer(bool allowed);

private:
    Microphone& microphone_;
    DefaultsStore& defaults_;
    std::function<void(bool granted)> answered_;
};

}  // namespace chimewerk
