#pragma once

#include <chrono>
#include <map>
#include <string>

#include "linux/launches/app_unit.h"

namespace chimewerk {

/// Decides which unit starts are application launches. Moments are times of the monotonic clock.
class AppUnitLaunches {
public:
    using Moment = std::chrono::microseconds;

    /// Forgets all units; units that became active before `now` do not count as launches.
    void begin(Moment now);

    /// Returns whether `unitName`, last activated at `activeSince`, is a launch not yet reported.
    /// Not counted: units active since before the beginning; units that the session starts at
    /// login, which are mostly background helpers; and the sandbox of an application just launched,
    /// which is a second unit for the same application.
    bool isLaunch(const std::string& unitName, Moment activeSince);

    /// Forgets a unit that no longer exists.
    void forget(const std::string& unitName) { activeSince_.erase(unitName); }

    /// Returns the number of remembered units.
    std::size_t remembered() const { return activeSince_.size(); }

private:
    Moment begin_{0};
    std::map<std::string, Moment> activeSince_;
    AppUnit last_;
    Moment lastAt_{0};
};

}  // namespace chimewerk
