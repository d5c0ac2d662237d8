// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/hid_lid_sensor.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace chimewerk {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Items of report descriptors.
Bytes page(std::uint8_t number) {
    return {0x05, number};
}
Bytes usage(std::uint8_t low, std::uint8_t high = 0) {
    return {0x0A, low, high};
}
Bytes size(std::uint8_t bits) {
    return {0x75, bits};
}
Bytes count(std::uint8_t fields) {
    return {0x95, fields};
}
Bytes reportId(std::uint8_t id) {
    return {0x85, id};
}
Bytes logicalMinimum(std::int8_t value) {
    return {0x15, static_cast<std::uint8_t>(value)};
}
const Bytes kPush{0xA4};
const Bytes kPop{0xB4};
const Bytes kPhysical{0xA1, 0x00};
const Bytes kApplication{0xA1, 0x01};
const Bytes kLogical{0xA1, 0x02};
const Bytes kEnd{0xC0};
const Bytes kInput{0x81, 0x02};
const Bytes kInputPadding{0x81, 0x01};
const Bytes kVariable{0xB1, 0x02};
const Bytes kChoice{0xB1, 0x00};
const Bytes kPadding{0xB1, 0x01};

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// The angle: one field of 16 bits in report 1.
const Bytes kAngle = reportId(1) + size(16) + count(1) + kInput;
const Bytes kLidBegin = page(0x20) + usage(0x8A) + kApplication + kAngle;

TEST(TheHidLidSensor, IsAnOutermostCollectionWithItsUsage) {
    struct Case {
        const char* what;
        Bytes descriptor;
        bool isThere;
    };
    for (const Case& c : std::vector<Case>{
             {"an application", kLidBegin + kEnd, true},
             {"a physical collection", page(0x20) + usage(0x8A) + kPhysical + kAngle + kEnd, true},
             {"behind another one",
              page(0x01) + usage(0x02) + kApplication + kEnd + kLidBegin + kEnd, true},
             {"the page set after the usage",
              usage(0x8A) + page(0x20) + kApplication + kAngle + kEnd, true},
             {"page and usage in one",
              Bytes{0x0B, 0x8A, 0x00, 0x20, 0x00} + kApplication + kAngle + kEnd, true},
             {"the page from before a pop",
              page(0x20) + kPush + page(1) + kPop + usage(0x8A) + kApplication + kAngle + kEnd,
              true},
             {"behind a long item", Bytes{0xFE, 2, 0x10, 0xC0, 0xC0} + kLidBegin + kEnd, true},
             {"nine bits and padding",
              page(0x20) + usage(0x8A) + kApplication + reportId(1) + size(9) + count(1) + kInput +
                  size(7) + kInputPadding + kEnd,
              true},
             {"the orientation of a tablet: state and event before the angles",
              page(0x20) + usage(0x8A) + kApplication + reportId(1) + size(8) + count(2) + kInput +
                  size(16) + count(3) + kInput + kEnd,
              false},
             {"the angle in another report",
              page(0x20) + usage(0x8A) + kApplication + reportId(2) + size(16) + count(1) + kInput +
                  kEnd,
              false},
             {"padding in place of the angle",
              page(0x20) + usage(0x8A) + kApplication + reportId(1) + size(16) + count(1) +
                  kInputPadding + kInput + kEnd,
              false},
             {"no inputs", page(0x20) + usage(0x8A) + kApplication + kEnd, false},
             {"one sensor among those of a hub",
              page(0x20) + usage(0x01) + kApplication + usage(0x8A) + kPhysical + kAngle + kEnd +
                  kEnd,
              false},
             {"another page", page(0x0C) + usage(0x8A) + kApplication + kAngle + kEnd, false},
             {"another usage", page(0x20) + usage(0x8B) + kApplication + kAngle + kEnd, false},
             {"the usage of an input before",
              page(0x01) + usage(0x02) + kApplication + page(0x20) + usage(0x8A) + kInput + kEnd +
                  kApplication + kAngle + kEnd,
              false},
             {"nothing", {}, false},
             {"not closed", kLidBegin, false},
             {"closed twice", kLidBegin + kEnd + kEnd, false},
             {"popped without a push", kLidBegin + kEnd + kPop, false},
             {"half an item", kLidBegin + kEnd + Bytes{0x0A, 1}, false},
             {"half a long item", kLidBegin + kEnd + Bytes{0xFE}, false},
             {"no report has the number 0", kLidBegin + reportId(0) + kEnd, false}}) {
        EXPECT_EQ(findLidSensor(c.descriptor).has_value(), c.isThere) << c.what;
    }
}

/// A device with these feature reports.
class FakeFeatureReports final : public HidFeatureReports {
public:
    std::map<std::uint8_t, Bytes> reports;
    std::vector<Bytes> written;

    Bytes read(std::uint8_t id) override {
        return reports.contains(id) ? Bytes{id} + reports[id] : Bytes{};
    }
    void write(const Bytes& report) override {
        written.push_back(report);
        reports[report[0]] = Bytes(report.begin() + 1, report.end());
    }
};

/// A sensor with two selectors and an interval. Reporting state: three bits, counted from 1. Power
/// state: one byte, counted from 0. Interval: in a second report, after a sensitivity.
const Bytes kSleepyLid = kLidBegin + reportId(1) + size(3) + count(1) + logicalMinimum(1) +
                         usage(0x16, 0x03) + kLogical + usage(0x40, 0x08) + usage(0x41, 0x08) +
                         kChoice + kEnd + size(5) + kPadding + logicalMinimum(0) + size(8) +
                         usage(0x19, 0x03) + kLogical + usage(0x50, 0x08) + kChoice + kEnd +
                         reportId(2) + size(16) + count(2) + usage(0x0F, 0x03) + usage(0x0E, 0x03) +
                         kVariable + kEnd;

TEST(TheHidLidSensor, IsWokenBitByBit) {
    const auto sensor = findLidSensor(kSleepyLid);
    ASSERT_TRUE(sensor);
    FakeFeatureReports device;
    device.reports = {{1, {0b1010'1001, 0xFF, 0x77}}, {2, {1, 2, 0xFF, 0xFF}}};
    wakeLidSensor(*sensor, device);
    EXPECT_EQ(device.written,
              (std::vector<Bytes>{
                  {1, 0b1010'1010, 0xFF, 0x77}, {1, 0b1010'1010, 0x01, 0x77}, {2, 1, 2, 100, 0}}));
}

TEST(TheHidLidSensor, IsNotWrittenToIfItCannotBeRead) {
    const auto sensor = findLidSensor(kSleepyLid);
    ASSERT_TRUE(sensor);
    FakeFeatureReports device;
    device.reports = {{1, {0b1010'1001}},
                      {2, {1, 2, 3}}};  // Each is too short for one of its settings.
    wakeLidSensor(*sensor, device);
    EXPECT_EQ(device.written, (std::vector<Bytes>{{1, 0b1010'1010}}));

    FakeFeatureReports other;
    other.reports = {{1, {0, 0}}, {2, {0, 0, 0, 0}}};
    wakeLidSensor(*findLidSensor(kLidBegin + kEnd), other);
    EXPECT_EQ(other.written, std::vector<Bytes>{});
}

TEST(TheLidReport, HoldsNineBitsOfAngle) {
    struct Case {
        std::vector<std::uint8_t> bytes;
        std::optional<float> angle;
    };
    for (const Case& c : std::vector<Case>{{{1, 0x2C, 0x01}, 300.0F},
                                           {{1, 0x2C, 0xFF}, 300.0F},
                                           {{1, 0x2C, 0xFE}, 44.0F},
                                           {{1, 0xFF, 0x01, 0xFF, 0xFF}, 511.0F},
                                           {{1, 0, 0}, 0.0F},
                                           {{2, 90, 0}, std::nullopt},
                                           {{0, 90, 0}, std::nullopt},
                                           {{1, 90}, std::nullopt},
                                           {{1}, std::nullopt},
                                           {{}, std::nullopt}}) {
        EXPECT_EQ(decodeLidReport(c.bytes), c.angle) << testing::PrintToString(c.bytes);
    }
}

}  // namespace
}  // namespace chimewerk
