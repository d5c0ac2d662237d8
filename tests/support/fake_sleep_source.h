// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "monitors/sleep_source.h"
#include "support/journal.h"

namespace chimewerk {

/// A system that the test puts to sleep and wakes.
class FakeSleepSource final : public SleepSource, public Noting {
public:
    /// Whether power messages are available.
    bool works = true;
    /// The arguments answered since they were last taken.
    std::vector<std::intptr_t> allowed;

    bool registerHandler(Handler handler) override {
        note("sleep");
        handler_ = works ? std::move(handler) : nullptr;
        return works;
    }
    void allowPowerChange(std::intptr_t argument) override { allowed.push_back(argument); }

    void send(std::int64_t messageType, std::intptr_t argument = 0) {
        if (handler_) {
            handler_(static_cast<std::uint32_t>(messageType), argument);
        }
    }

private:
    Handler handler_;
};

}  // namespace chimewerk
