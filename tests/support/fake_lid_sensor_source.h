#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "monitors/lid_angle_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A hinge that the test moves.
class FakeLidSensorSource final : public LidSensorSource, public Noting {
public:
    /// Whether there is a sensor when the source is opened.
    bool present = true;

    bool open(ReportHandler onReport, FoundHandler onFound) override {
        note("lid");
        onReport_ = std::move(onReport);
        onFound_ = std::move(onFound);
        return present;
    }
    void close() override {
        note("-lid");
        onReport_ = nullptr;
        onFound_ = nullptr;
    }

    bool isOpen() const { return onReport_ != nullptr; }
    void report(const std::vector<std::uint8_t>& bytes) {
        if (onReport_) {
            onReport_(bytes);
        }
    }
    /// Reports an angle, 0 to 511 degrees.
    void moveTo(int degrees) {
        report({1, static_cast<std::uint8_t>(degrees & 0xFF),
                static_cast<std::uint8_t>(degrees >> 8)});
    }
    /// The sensor comes or goes while the source is open.
    void setPresent(bool now) {
        present = now;
        if (onFound_) {
            onFound_(now);
        }
    }

private:
    ReportHandler onReport_;
    FoundHandler onFound_;
};

}  // namespace chimewerk
