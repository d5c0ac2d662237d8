// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace chimewerk {

/// The state of a power source.
struct PowerSourceDescription {
    /// Whether the machine runs on this source, without external power. False if that is unknown.
    bool isOnBattery = false;
    /// The charge in percent as the desktop shows it, 0 to 100; none if it is unknown.
    std::optional<double> charge = {};

    bool operator==(const PowerSourceDescription&) const = default;
};

/// The machine's power sources; only the first one counts. Main thread only.
class PowerSources {
public:
    /// Ends the callbacks on destruction. Must not outlive the power sources.
    class Subscription {
    public:
        virtual ~Subscription() = default;
    };

    struct Callbacks {
        /// The power state is known for the first time; this is not a change. Called once: within
        /// `subscribe()` if the state is already known, else later. Never called if there is no
        /// state to know.
        std::function<void()> onKnown;
        /// The first source has changed, appeared or disappeared since `onKnown` or the last call.
        std::function<void()> onChange;
    };

    virtual ~PowerSources() = default;

    /// Returns the current first source, or none if there is none or it is not known yet. Does
    /// not block.
    virtual std::optional<PowerSourceDescription> first() const = 0;

    /// Calls the callbacks on the main thread until the returned subscription is destroyed. Only
    /// one subscription at a time.
    [[nodiscard]] virtual std::unique_ptr<Subscription> subscribe(Callbacks callbacks) = 0;
};

}  // namespace chimewerk
