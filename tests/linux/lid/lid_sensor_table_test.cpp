// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/lid_sensor_table.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <memory>
#include <optional>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/lid/hidraw_lid_sensor_source.h"
#include "linux/lid/iio_lid_sensor_source.h"
#include "linux/lid/linux_hardware_query.h"
#include "support/run_queue.h"
#include "tools/machine/fake_devices.h"
#include "tools/machine/fake_hid_device.h"

namespace chimewerk {
namespace {

using Report = std::vector<std::uint8_t>;

const Report kMouseDescriptor{0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0xC0};

class TheLidSensor : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(FakeDevices::works()); }

    bool open() {
        return table.open([this](float degrees) { angles.push_back(degrees); },
                          [this](bool found) { nowFound = found; });
    }
    template <typename Condition>
    bool until(Condition condition) {
        return runUntil(queue, condition);
    }
    bool reports(bool found) {
        return until([&] { return nowFound == found; });
    }
    /// Returns the next angle; none if none arrives.
    std::optional<float> next() {
        angles.clear();
        return until([&] { return !angles.empty(); }) ? std::optional(angles.front())
                                                      : std::nullopt;
    }
    std::string addHinge(const FakeDevices::Values& attributes,
                         const std::string& name = "iio:device0") {
        return machine.add("iio", name, "", attributes, {{"DEVTYPE", "iio_device"}});
    }
    FakeDevices machine;
    EpollMainQueue queue;
    LidSensorTable table{queue, LidSensorTable::rows(queue)};
    std::vector<float> angles;
    std::optional<bool> nowFound;
};

TEST_F(TheLidSensor, IsTheHidDeviceWithTheRightUsage) {
    FakeHidDevice mouse(machine, "0", kMouseDescriptor);
    FakeHidDevice broken(machine, "1", Report(kLidDescriptor.begin(), kLidDescriptor.end() - 1));
    FakeHidDevice lid(machine, "2", kLidDescriptor);
    ASSERT_TRUE(open());
    mouse.reportAngle(9);
    lid.reportAngle(95);
    EXPECT_EQ(next(), 95);
    lid.report({1, 44, 255, 4, 5});
    EXPECT_EQ(next(), 300);
    table.close();
    angles.clear();
    lid.reportAngle(10);
    queue.dispatch();
    EXPECT_TRUE(angles.empty());
}

/// A device that answers only when it may.
class SlowReports final : public HidFeatureReports {
public:
    explicit SlowReports(std::counting_semaphore<>& answers) : answers_(answers) {}
    std::vector<std::uint8_t> read(std::uint8_t id) override {
        answers_.acquire();
        return {id, 0, 0, 0};
    }
    void write(const std::vector<std::uint8_t>& /*report*/) override { ++writes; }

    static inline std::atomic<int> writes = 0;

private:
    std::counting_semaphore<>& answers_;
};

TEST_F(TheLidSensor, IsWokenWithoutBlockingTheProgramAndAgainAfterSuspension) {
    // With a feature report for its reporting state.
    Report descriptor = kLidDescriptor;
    const Report feature{0x0A, 0x16, 0x03, 0x75, 8, 0xB1, 0x02};
    descriptor.insert(descriptor.end() - 1, feature.begin(), feature.end());
    const FakeHidDevice lid(machine, "0", descriptor);
    std::counting_semaphore<> answers(0);
    HidrawLidSensorSource source(queue,
                                 [&](int) { return std::make_unique<SlowReports>(answers); });
    ASSERT_TRUE(source.open([](float) {}, [](bool) {}));
    for (const int wakes : {1, 2}) {
        EXPECT_EQ(SlowReports::writes, wakes - 1) << "still waiting for the device";
        answers.release();
        EXPECT_TRUE(until([&] { return SlowReports::writes == wakes; }));
        source.wakeSensor();
    }
    answers.release();
}

TEST_F(TheLidSensor, MayBePluggedInLaterUnpluggedAndPluggedInAgain) {
    EXPECT_FALSE(open());
    EXPECT_TRUE(table.report().lacksHardware);
    for (int i = 0; i < 2; ++i) {
        FakeHidDevice mouse(machine, "0", kMouseDescriptor);
        FakeHidDevice lid(machine, "1", kLidDescriptor);
        ASSERT_TRUE(reports(true));
        lid.reportAngle(i);
        EXPECT_EQ(next(), static_cast<float>(i));
        lid.unplug();
        ASSERT_TRUE(reports(false));
    }
}

TEST_F(TheLidSensor, IsReplacedByTheNextInTheTableUntilItReturns) {
    std::optional<FakeHidDevice> lid(std::in_place, machine, "0", kLidDescriptor);
    const std::string hinge = addHinge({{"name", "cros-ec-lid-angle\n"}, {"in_angl_raw", "120\n"}});
    ASSERT_TRUE(open());
    lid->reportAngle(90);
    EXPECT_EQ(next(), 90);
    EXPECT_EQ(table.report().mechanism, "hinge sensor, hidraw");
    lid.reset();
    EXPECT_EQ(next(), 120);
    EXPECT_EQ(table.report().mechanism, "hinge sensor, industrial I/O");
    lid.emplace(machine, "0", kLidDescriptor);
    lid->reportAngle(91);
    ASSERT_TRUE(until([&] { return !angles.empty() && angles.back() == 91; }));
    machine.remove(hinge);
    lid->reportAngle(92);
    EXPECT_EQ(next(), 92);
    EXPECT_EQ(nowFound, std::nullopt) << "there has always been one";
}

TEST_F(TheLidSensor, IsReadFromIndustrialIoInDegreesOrRadians) {
    struct Case {
        const char* what;
        FakeDevices::Values attributes;
        float degrees;
    };
    for (const Case& c :
         std::vector<Case>{{"degrees without a scale",
                            {{"name", "cros-ec-lid-angle\n"}, {"in_angl_raw", "135\n"}},
                            135},
                           {"the laptops with Apple's processors",
                            {{"name", "aop-sensors-las\n"}, {"in_angl_raw", "107\n"}},
                            107},
                           {"radians, the hinge by its label",
                            {{"name", "hinge\n"},
                             {"in_angl0_raw", "10\n"},
                             {"in_angl0_label", "screen\n"},
                             {"in_angl1_raw", "359\n"},
                             {"in_angl1_label", "hinge\n"},
                             {"in_angl_scale", "0.017453293\n"}},
                            359},
                           {"a scale of its own, an offset, a rounding",
                            {{"name", "lid\n"},
                             {"in_angl0_raw", "-1000\n"},
                             {"in_angl0_scale", "0.000174533\n"},
                             {"in_angl0_offset", "1006\n"},
                             {"in_angl_scale", "9\n"}},
                            0},
                           {"right round", {{"name", "lid\n"}, {"in_angl_raw", "360\n"}}, 360}}) {
        const std::string hinge = addHinge(c.attributes);
        ASSERT_TRUE(open()) << c.what;
        EXPECT_EQ(next(), c.degrees) << c.what;
        table.close();
        machine.remove(hinge);
    }
}

TEST_F(TheLidSensor, IsAPairOfAccelerometersWhereThereIsNoHingeSensor) {
    const auto accelerometer = [this](const std::string& device, const char* label, int y, int z) {
        return addHinge({{"name", "cros-ec-accel\n"},
                         {"label", std::string(label) + "\n"},
                         {"in_accel_scale", "0.000598550\n"},  // 2 g are 32768.
                         {"in_accel_x_raw", "120\n"},
                         {"in_accel_y_raw", std::to_string(y) + "\n"},
                         {"in_accel_z_raw", std::to_string(z) + "\n"}},
                        device);
    };
    const std::string display = accelerometer("iio:device0", "accel-display", 16384, 0);
    EXPECT_FALSE(open()) << "the base is missing";
    table.close();
    const std::string base = accelerometer("iio:device1", "accel-base", 0, 16384);
    ASSERT_TRUE(open());
    EXPECT_EQ(next(), 90);
    machine.set(display, "in_accel_y_raw", "11585\n");
    machine.set(display, "in_accel_z_raw", "11585\n");
    ASSERT_TRUE(until([&] { return angles.back() == 135; }));
    machine.remove(display);
    EXPECT_TRUE(reports(false));
}

TEST(TheLidAngle, ComesFromGravityInLidAndBase) {
    struct Case {
        const char* what;
        Acceleration display;
        Acceleration base;
        std::optional<float> degrees;
    };
    for (const Case& c : std::vector<Case>{
             {"nearly closed", {0, 0.86, -9.77}, {0, 0, 9.81}, 5.0F},
             {"upright", {0, 9.81, 0}, {0, 0, 9.81}, 90.0F},
             {"flat", {0, 0, 9.81}, {0, 0, 9.81}, 180.0F},
             {"flat on a slope", {0, 6.94, -6.94}, {0, 6.94, -6.94}, 180.0F},
             {"upright on a slope", {0, 9.66, 1.7}, {0, -1.7, 9.66}, 90.0F},
             {"closed, by a bad sensor", {0, -0.86, -9.77}, {0, 0, 9.81}, std::nullopt},
             {"on its side", {9.7, 1, 1}, {9.7, 1, 1}, std::nullopt},
             {"shaken", {0, 14, 0}, {0, 0, 9.81}, std::nullopt}}) {
        EXPECT_EQ(lidAngleOf(c.display, c.base), c.degrees) << c.what;
    }
}

TEST_F(TheLidSensor, IsNoOtherDeviceWithAnAngle) {
    for (const FakeDevices::Values& attributes : std::vector<FakeDevices::Values>{
             {{"name", "tmag5273\n"}, {"in_angl_raw", "90\n"}},
             {{"name", "hinge\n"}, {"in_angl0_raw", "90\n"}, {"in_angl0_label", "keyboard\n"}},
             {{"name", "lid accelerometer\n"}, {"in_accel_x_raw", "90\n"}},
             {}}) {
        const std::string other = addHinge(attributes);
        EXPECT_FALSE(open());
        table.close();
        machine.remove(other);
    }
}

TEST_F(TheLidSensor, SkipsInvalidReadingsAndDisappearsWithItsDevice) {
    const std::string hinge = addHinge({{"name", "lid\n"}, {"in_angl_raw", "500\n"}});
    ASSERT_TRUE(open());
    for (const char* const raw : {"none\n", "45\n"}) {
        wakeUpsWithin(queue, Seconds{0.3});
        EXPECT_EQ(angles.size(), 0U) << "before " << raw;
        machine.set(hinge, "in_angl_raw", raw);
    }
    EXPECT_EQ(next(), 45);
    machine.remove(hinge);
    EXPECT_TRUE(reports(false));
}

TEST(AnIioHinge, ConvertsReadingsToDegreesAndRejectsImpossibleOnes) {
    struct Case {
        double raw;
        std::optional<float> degrees;
    };
    const IioHinge hinge{.rawPath = "", .degreesPerUnit = 0.5, .offset = 10};
    for (const Case& c : std::vector<Case>{{-10, 0.0F},
                                           {170.9, 90.0F},
                                           {504, 257.0F},
                                           {710, 360.0F},
                                           {710.1, std::nullopt},
                                           {-10.1, std::nullopt},
                                           {1e300, std::nullopt},
                                           {std::nan(""), std::nullopt}}) {
        EXPECT_EQ(hinge.degrees(c.raw), c.degrees) << c.raw;
    }
}

TEST_F(TheLidSensor, MakesTheLidAngleEventAvailable) {
    const LinuxHardwareQuery machineToday("x86_64", LinuxHardwareQuery::hasHingeSensor);
    EXPECT_FALSE(machineToday.supportsLidAngle());
    const std::string hinge = addHinge({{"name", "lid\n"}, {"in_angl_raw", "45\n"}});
    EXPECT_TRUE(machineToday.supportsLidAngle());
    machine.remove(hinge);
    EXPECT_FALSE(machineToday.supportsLidAngle());
    const FakeHidDevice lid(machine, "0", kLidDescriptor);
    EXPECT_TRUE(machineToday.supportsLidAngle());
}

TEST(TheHardware, Is64BitArmByItsProcessorsName) {
    for (const auto& [name, is] :
         {std::pair("aarch64", true), {"aarch64_be", true}, {"armv7l", false}, {"x86_64", false}}) {
        const LinuxHardwareQuery machine(name, [] { return false; });
        EXPECT_EQ(machine.supportsLidAngle(), is) << name;
    }
}

}  // namespace
}  // namespace chimewerk
