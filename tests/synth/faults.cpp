#include "synth/faults.h"

#include <vector>

namespace chimewerk::sounds {

std::string faultsOf(const Levels& levels, Kind kind) {
    const double shortest = kind == Kind::key ? 0.040 : 0.150;
    const double longest = kind == Kind::key ? 0.140 : 1.200;
    struct Check {
        bool failed;
        const char* fault;
    };
    const std::vector<Check> checks = {
        {levels.peak < -40.0, "silent"},
        {levels.peak > -1.0, "peak above -1 dBFS"},
        {levels.plateau > 4, "clipped"},
        {levels.seconds < shortest - 1e-9, "too short"},
        {levels.seconds > longest + 1e-9, "too long"},
        {levels.onset > 3.0, "begins late"},
        {levels.firstStep > -60.0, "clicks at its start"},
        {levels.lastStep > -60.0, "clicks at its end"},
        {levels.ending > -30.0, "cut"},
        {levels.offset > -40.0, "off centre"},
    };
    std::string faults;
    for (const Check& check : checks) {
        if (check.failed) {
            faults += std::string(check.fault) + "; ";
        }
    }
    return faults;
}

}  // namespace chimewerk::sounds
