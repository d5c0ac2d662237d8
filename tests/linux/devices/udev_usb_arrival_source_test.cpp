// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/udev_usb_arrival_source.h"

#include <gtest/gtest.h>

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "tools/machine/fake_devices.h"

namespace chimewerk {
namespace {

class UsbArrivals : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(FakeDevices::works()); }

    void open() {
        ASSERT_TRUE(source.open([this] { ++calls; }));
    }
    std::string plug(const std::string& name, const std::string& type = "usb_device") {
        return machine.add("usb", name, "", {}, {{"DEVTYPE", type}});
    }
    /// Returns the number of calls since the last time.
    int heard() {
        for (int i = 0; i < 10; ++i) {
            queue.dispatch();
        }
        return std::exchange(calls, 0);
    }

    FakeDevices machine;
    EpollMainQueue queue;
    UdevUsbArrivalSource source{queue};
    int calls = 0;
};

TEST_F(UsbArrivals, AreDevicesThatComeAfterTheStart) {
    const std::string there = plug("usb1");
    open();
    EXPECT_EQ(heard(), 0);
    const std::string stick = plug("1-1");
    EXPECT_EQ(heard(), 1);
    plug("1-1:1.0", "usb_interface");
    EXPECT_EQ(heard(), 0) << "a part of a device";
    machine.add("input", "event9", "", {}, {{"DEVTYPE", "usb_device"}});
    EXPECT_EQ(heard(), 0) << "no USB";
    machine.announce(there, "change");
    machine.announce(there, "bind");
    machine.remove(stick);
    EXPECT_EQ(heard(), 0) << "no arrivals";
    plug("1-1");
    EXPECT_EQ(heard(), 1);
}

TEST_F(UsbArrivals, LeaveOutEventsThatAreOnlyRepeated) {
    open();
    const std::string stick = plug("1-1");
    EXPECT_EQ(heard(), 1);
    machine.setProperty(stick, "SYNTH_UUID", "0");
    machine.announce(stick, "add");
    EXPECT_EQ(heard(), 0);
}

TEST_F(UsbArrivals, ShareACallWhenTheyComeTogetherAndEndAtClose) {
    open();
    plug("1-1");
    plug("1-1.1");
    plug("1-1.2");
    EXPECT_EQ(heard(), 1);
    plug("1-1.3");
    source.close();
    EXPECT_EQ(heard(), 0);
    plug("1-1.4");
    open();
    EXPECT_EQ(heard(), 0);
    plug("1-2");
    EXPECT_EQ(heard(), 1);
}

}  // namespace
}  // namespace chimewerk
