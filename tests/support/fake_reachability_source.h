#pragma once

#include "monitors/network_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A network that the test plugs and unplugs.
class FakeReachabilitySource final : public ReachabilitySource, public Noting {
public:
    bool plugged = false;
    bool isOpen = false;

    void open() override {
        note("network");
        isOpen = true;
    }
    void close() override {
        note("-network");
        isOpen = false;
    }
    bool isReachable() override { return isOpen && plugged; }
};

}  // namespace chimewerk
