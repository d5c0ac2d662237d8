// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/sysfs_backlight_source.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>

#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"
#include "tools/machine/fake_devices.h"

namespace chimewerk {
namespace {

class TheBacklight : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(FakeDevices::works()); }

    std::string add(const std::string& name, const std::string& type, const std::string& now,
                    const std::string& max) {
        return machine.add(
            "backlight", name, "",
            {{"type", type + "\n"}, {"brightness", now + "\n"}, {"max_brightness", max + "\n"}});
    }

    FakeDevices machine;
    EpollMainQueue queue;
    SysfsBacklightSource source{queue};
};

TEST_F(TheBacklight, IsReadEachTimeAndMayDisappearAndReturn) {
    EXPECT_EQ(source.brightness(), std::nullopt);
    const std::string panel = add("intel_backlight", "raw", "300", "1200");
    EXPECT_EQ(source.brightness(), 0.25F);
    EXPECT_EQ(source.report(), SourceReport{.mechanism = "intel_backlight, 25 %"});
    machine.set(panel, "brightness", "1200\n");
    EXPECT_EQ(source.brightness(), 1.0F);
    machine.remove(panel);
    EXPECT_EQ(source.brightness(), std::nullopt);
    EXPECT_TRUE(source.report().lacksHardware);
    add("intel_backlight", "raw", "600", "1200");
    EXPECT_EQ(source.brightness(), 0.5F);
}

TEST_F(TheBacklight, IsAtFirstTheFirmwaresThenThePlatformsThenARawOneThatCanBeRead) {
    const auto atFirst = [this] { return SysfsBacklightSource(queue).brightness(); };
    add("a_unknown", "something else", "9", "10");
    add("b_raw", "raw", "1", "10");
    EXPECT_EQ(atFirst(), 0.1F);
    const std::string platform = add("c_platform", "platform", "2", "10");
    EXPECT_EQ(atFirst(), 0.2F);
    const std::string firmware = add("e_firmware", "firmware", "3", "10");
    EXPECT_EQ(atFirst(), 0.3F);
    const std::string first = add("d_firmware", "firmware", "4", "10");
    EXPECT_EQ(atFirst(), 0.4F);

    machine.set(first, "max_brightness", "0\n");
    EXPECT_EQ(atFirst(), 0.3F) << "a scale without length";
    machine.set(firmware, "brightness", "none\n");
    EXPECT_EQ(atFirst(), 0.2F) << "no number";
    machine.set(platform, "max_brightness", "");
    EXPECT_EQ(atFirst(), 0.1F) << "nothing at all";
}

TEST_F(TheBacklight, FollowsTheBacklightThatTheDesktopSets) {
    // A laptop with two graphics chips; its firmware backlight has no effect.
    const std::string firmware = add("acpi_video0", "firmware", "100", "100");
    const std::string intel = add("intel_backlight", "raw", "4000", "10000");
    add("nvidia_0", "raw", "100", "100");
    EXPECT_EQ(source.brightness(), 1.0F);
    machine.set(intel, "brightness", "5000\n");
    EXPECT_FLOAT_EQ(*source.brightness(), 1.1F) << "brighter";
    machine.set(intel, "brightness", "3000\n");
    EXPECT_FLOAT_EQ(*source.brightness(), 0.9F);
    machine.set(intel, "brightness", "3500\n");
    machine.set(firmware, "brightness", "10\n");
    EXPECT_FLOAT_EQ(*source.brightness(), 0.95F) << "both have changed";
    machine.remove(intel);
    EXPECT_FLOAT_EQ(*source.brightness(), 0.95F) << "unplugging is no change";
    machine.set(firmware, "brightness", "5\n");
    EXPECT_FLOAT_EQ(*source.brightness(), 0.9F);
}

TEST_F(TheBacklight, IgnoresOutputsThatAreOff) {
    // The backlights of card0-eDP-1 and card1-eDP-2.
    const std::string amd = add("amdgpu_bl0", "raw", "2", "10");
    const std::string nvidia = add("nvidia_0", "raw", "6", "10");
    machine.set(amd, "device/enabled", "disabled\n");
    machine.set(nvidia, "device/enabled", "enabled\n");
    EXPECT_EQ(source.brightness(), 0.6F);
    machine.set(amd, "brightness", "9\n");
    EXPECT_EQ(source.brightness(), 0.6F);
    machine.set(amd, "device/enabled", "enabled\n");
    machine.set(nvidia, "device/enabled", "disabled\n");
    EXPECT_EQ(source.brightness(), 0.6F) << "the switch itself is no change";
    machine.set(amd, "brightness", "8\n");
    EXPECT_FLOAT_EQ(*source.brightness(), 0.5F);
}

TEST_F(TheBacklight, IsAnnouncedByUdevsEventsAndPolledWhereUdevDoesNotRun) {
    const TemporaryFolder run;
    const std::string control = run / "control";
    const std::string backlights = "/sys/class/backlight";
    EXPECT_FALSE(SysfsBacklightSource(queue, backlights, control).announcesChanges());
    std::ofstream(control) << "";
    SysfsBacklightSource announced(queue, backlights, control);
    int announcements = 0;
    announced.onAnnouncement([&] { ++announcements; });
    const auto announces = [&] {
        return runUntil(queue, [&] { return std::exchange(announcements, 0) > 0; });
    };
    EXPECT_TRUE(announced.announcesChanges());
    const std::string panel = add("intel_backlight", "raw", "300", "1200");
    EXPECT_TRUE(announces());
    machine.set(panel, "brightness", "600\n");
    machine.announce(panel, "change");
    EXPECT_TRUE(announces());
    EXPECT_EQ(announced.brightness(), 0.5F);
    machine.add("usb", "1-1", "", {}, {{"DEVTYPE", "usb_device"}});
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.1}), 0) << "another kind of device";
    machine.announce(panel, "remove");
    EXPECT_TRUE(announces());
    std::filesystem::remove(control);
    EXPECT_FALSE(announced.announcesChanges()) << "udev has ended";
}

TEST_F(TheBacklight, IsClampedToItsScale) {
    const std::string panel = add("panel", "raw", "11", "10");
    EXPECT_EQ(source.brightness(), 1.0F);
    machine.set(panel, "brightness", "-1\n");
    EXPECT_EQ(source.brightness(), 0.0F);
}

}  // namespace
}  // namespace chimewerk
