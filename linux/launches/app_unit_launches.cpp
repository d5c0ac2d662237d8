#include "linux/launches/app_unit_launches.h"

namespace chimewerk {

namespace {

constexpr const char* kSandbox = "flatpak";
/// A sandbox starts within this time after its application.
constexpr std::chrono::seconds kSandboxDelay{5};

}  // namespace

void AppUnitLaunches::begin(Moment now) {
    begin_ = now;
    activeSince_.clear();
    last_ = {};
}

bool AppUnitLaunches::isLaunch(const std::string& unitName, Moment activeSince) {
    if (!AppUnit::isOne(unitName) || activeSince <= begin_) {
        return false;
    }
    Moment& known = activeSince_[unitName];
    if (known == activeSince) {
        return false;
    }
    known = activeSince;
    const AppUnit unit = AppUnit::parse(unitName);
    if (unit.autostarted) {
        return false;
    }
    const bool sandbox = unit.launcher == kSandbox && last_.launcher != kSandbox &&
                         unit.application == last_.application &&
                         activeSince - lastAt_ < kSandboxDelay;
    last_ = unit;
    lastAt_ = activeSince;
    return !sandbox;
}

}  // namespace chimewerk
