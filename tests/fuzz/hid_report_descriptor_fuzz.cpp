// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "linux/lid/hid_lid_sensor.h"
#include "linux/lid/hid_report_descriptor.h"

using namespace chimewerk;

namespace {

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

/// A device that answers each feature report with bytes of the input.
class EchoingReports final : public HidFeatureReports {
public:
    explicit EchoingReports(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::vector<std::uint8_t> read(std::uint8_t reportId) override {
        std::vector<std::uint8_t> report(1, reportId);
        report.insert(report.end(), bytes_.begin(), bytes_.end());
        return report;
    }
    void write(const std::vector<std::uint8_t>& report) override {
        require(report.size() == 1 + bytes_.size());
    }

private:
    const std::span<const std::uint8_t> bytes_;
};

}  // namespace

/// Treats the input as a device's report descriptor.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    std::size_t features = 0;
    for (const HidCollection& collection : readHidReportDescriptor(bytes)) {
        features += collection.features.size();
        require(std::ranges::all_of(
            collection.features, [](const HidFeature& f) { return f.bits >= 1 && f.bits <= 32; }));
    }
    require(features <= size);
    if (const auto sensor = findLidSensor(bytes)) {
        EchoingReports reports(bytes);
        wakeLidSensor(*sensor, reports);
    }
    const auto angle = decodeLidReport(bytes);
    require(!angle || (*angle >= 0 && *angle <= 511));
    return 0;
}
