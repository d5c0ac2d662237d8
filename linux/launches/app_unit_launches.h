#pragma once

#include <chrono>
#include <map>
#include <string>

#include "linux/launches/app_unit.h"

namespace chimewerk {

/// Tells which starts of units are launches of applications. Moments are those of the monotonic clock, since
/// its beginning.
class AppUnitLaunches {
public:
    using Moment = std::chrono::microseconds;

    /// What became active before `now` is no launch.
    void begin(Moment now);

    /// Whether `unitName`, which has last become active at `activeSince`, has been launched since the last
    /// time it was asked about. Not a launch: what runs since before the beginning; what the session starts
    /// by itself at login, which are mostly background helpers, and a volley of sounds at each login would
    /// say nothing; and the sandbox that a launched application is put into, a unit of its own for the same
    /// application.
    bool isLaunch(const std::string& unitName, Moment activeSince);

    /// The unit is gone for good.
    void forget(const std::string& unitName) { activeSince_.erase(unitName); }

    /// How many units are remembered.
    std::size_t remembered() const { return activeSince_.size(); }

private:
    Moment begin_{0};
    std::map<std::string, Moment> activeSince_;
    AppUnit last_;
    Moment lastAt_{0};
};

}  // namespace chimewerk
