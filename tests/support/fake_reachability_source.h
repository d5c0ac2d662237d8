#pragma once

#include "monitors/network_monitor.h"

namespace chimewerk {

/// A network that the test plugs and unplugs.
class FakeReachabilitySource final : public ReachabilitySource {
public:
    bool plugged = false;
    bool isOpen = false;

    void open() override { isOpen = true; }
    void close() override { isOpen = false; }
    bool isReachable() override { return isOpen && plugged; }
};

}  // namespace chimewerk
