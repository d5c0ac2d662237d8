#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace chimewerk {

/// What a power source says of itself; each part may be missing.
struct PowerSourceDescription {
    /// Where the machine takes its power from: `kBatteryPower`, or anything else.
    std::optional<std::string> state;
    /// The charge in percent, 0 to 100.
    std::optional<double> currentCapacity;

    bool operator==(const PowerSourceDescription&) const = default;
};

/// The state of a source on which the machine runs without external power.
inline constexpr const char* kBatteryPower = "Battery Power";

/// The machine's power sources, of which the first counts. Main thread only.
class PowerSources {
public:
    /// Ends the calls when it is destroyed; must not outlive the power sources.
    class Subscription {
    public:
        virtual ~Subscription() = default;
    };

    struct Callbacks {
        /// The machine's power state is known, and was not before: this is no change. Runs within
        /// `subscribe()` where it is known by then; otherwise later, once, and never where there is nothing
        /// to know.
        std::function<void()> onKnown;
        /// The first source has changed, appeared or gone, since `onKnown` or the last call.
        std::function<void()> onChange;
    };

    virtual ~PowerSources() = default;

    /// The first source as it is now; none when there is none or it is not known yet. Returns without
    /// waiting.
    virtual std::optional<PowerSourceDescription> first() const = 0;

    /// Makes the calls on the main thread for as long as the result lives. One subscription at a time.
    [[nodiscard]] virtual std::unique_ptr<Subscription> subscribe(Callbacks callbacks) = 0;
};

}  // namespace chimewerk
