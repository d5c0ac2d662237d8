#pragma once

#include <functional>
#include <utility>

#include "monitors/usb_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A machine whose USB devices the test plugs in.
class FakeUsbArrivalSource final : public UsbArrivalSource, public Noting {
public:
    /// Whether arrivals can be heard.
    bool works = true;

    bool open(std::function<void()> arrived) override {
        note("usb");
        arrived_ = works ? std::move(arrived) : nullptr;
        return works;
    }
    void close() override {
        note("-usb");
        arrived_ = nullptr;
    }

    bool isOpen() const { return arrived_ != nullptr; }
    /// Attaches a device.
    void plug() {
        if (arrived_) {
            arrived_();
        }
    }

private:
    std::function<void()> arrived_;
};

}  // namespace chimewerk
