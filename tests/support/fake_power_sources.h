// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "monitors/power_sources.h"
#include "support/journal.h"

namespace chimewerk {

/// Power sources that the test changes. Their state is known from the start unless the test
/// clears `isKnown`.
class FakePowerSources final : public PowerSources, public Noting {
public:
    /// The first source; `first()` returns it while `isKnown` is set.
    std::optional<PowerSourceDescription> source;
    bool isKnown = true;

    std::optional<PowerSourceDescription> first() const override {
        return isKnown ? source : std::nullopt;
    }
    std::unique_ptr<Subscription> subscribe(Callbacks callbacks) override {
        note("power");
        callbacks_ = std::move(callbacks);
        if (isKnown) {
            callbacks_.onKnown();
        }
        return std::make_unique<Ending>(*this);
    }

    bool isFollowed() const { return callbacks_.onChange != nullptr; }
    /// Makes the power state known and reports that.
    void makeKnown() {
        isKnown = true;
        callbacks_.onKnown();
    }
    void change(std::optional<PowerSourceDescription> to) {
        source = to;
        if (isFollowed()) {
            callbacks_.onChange();
        }
    }

private:
    class Ending final : public Subscription {
    public:
        explicit Ending(FakePowerSources& sources) : sources_(sources) {}
        Ending(const Ending&) = delete;
        Ending& operator=(const Ending&) = delete;
        ~Ending() override {
            sources_.note("-power");
            sources_.callbacks_ = {};
        }

    private:
        FakePowerSources& sources_;
    };

    Callbacks callbacks_;
};

}  // namespace chimewerk
