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
    /// Plugs a device into the hub with this folder.
    std::string plugInto(const std::string& hub, const std::string& name,
                         const FakeDevices::Values& attributes = {}) {
        return machine.add("usb", name, hub, attributes, {{"DEVTYPE", "usb_device"}});
    }
    /// Returns the number of calls since the last time.
    int takeCalls() {
        for (int i = 0; i < 10; ++i) {
            queue.dispatch();
        }
        return std::exchange(calls, 0);
    }

    FakeDevices machine;
    EpollMainQueue queue;
    Seconds awake{100};
    Seconds asleep{0};
    UdevUsbArrivalSource source{
        queue, {.awake = [this] { return awake; }, .asleep = [this] { return asleep; }}};
    int calls = 0;
};

TEST_F(UsbArrivals, AreDevicesPluggedInAfterTheStart) {
    const std::string there = plug("usb1");
    open();
    EXPECT_EQ(takeCalls(), 0);
    const std::string stick = plug("1-1");
    EXPECT_EQ(takeCalls(), 1);
    plug("1-1:1.0", "usb_interface");
    EXPECT_EQ(takeCalls(), 0) << "a part of a device";
    machine.add("input", "event9", "", {}, {{"DEVTYPE", "usb_device"}});
    EXPECT_EQ(takeCalls(), 0) << "no USB";
    machine.announce(there, "change");
    machine.announce(there, "bind");
    machine.remove(stick);
    EXPECT_EQ(takeCalls(), 0) << "no arrivals";
    awake += Seconds(2);
    plug("1-1");
    EXPECT_EQ(takeCalls(), 1);
}

TEST_F(UsbArrivals, IgnoreEventsThatAreOnlyRepeated) {
    open();
    const std::string stick = plug("1-1");
    EXPECT_EQ(takeCalls(), 1);
    machine.setProperty(stick, "SYNTH_UUID", "0");
    machine.announce(stick, "add");
    EXPECT_EQ(takeCalls(), 0);
}

TEST_F(UsbArrivals, ShareACallWhenTheyArriveTogetherAndEndAtClose) {
    open();
    plug("1-1");
    plug("1-2");
    plug("1-3");
    EXPECT_EQ(takeCalls(), 1);
    plug("1-4");
    source.close();
    EXPECT_EQ(takeCalls(), 0);
    plug("1-5");
    open();
    EXPECT_EQ(takeCalls(), 0);
    plug("1-6");
    EXPECT_EQ(takeCalls(), 1);
}

TEST_F(UsbArrivals, AreOneForADockWithDevicesOnTwoBuses) {
    // The hubs of a USB 3 dock, at the two ports of one connector.
    const std::string slowBus = plug("usb1");
    const std::string fastBus = plug("usb2");
    machine.set(slowBus, "1-0:1.0/usb1-port4/connect_type", "hotplug\n");
    machine.set(fastBus, "2-0:1.0/usb2-port9/connect_type", "hotplug\n");
    machine.link(slowBus, "1-0:1.0/usb1-port4/peer", "../../../usb2/2-0:1.0/usb2-port9");
    machine.link(fastBus, "2-0:1.0/usb2-port9/peer", "../../../usb1/1-0:1.0/usb1-port4");
    open();
    const std::string dock = plugInto(slowBus, "1-4");
    machine.link(dock, "port", "../1-0:1.0/usb1-port4");
    EXPECT_EQ(takeCalls(), 1);
    awake += Seconds(0.2);
    machine.link(plugInto(fastBus, "2-9"), "port", "../2-0:1.0/usb2-port9");
    EXPECT_EQ(takeCalls(), 0) << "the same connector";
    for (const char* const name : {"1-4.1", "1-4.3", "1-4.4"}) {
        awake += Seconds(0.9);
        plugInto(dock, name);
        EXPECT_EQ(takeCalls(), 0) << name;
    }
    plugInto(slowBus, "1-2");
    EXPECT_EQ(takeCalls(), 1) << "another port";
    awake += Seconds(1.1);
    plugInto(dock, "1-4.2");
    EXPECT_EQ(takeCalls(), 1) << "plugged into the dock later";
}

TEST_F(UsbArrivals, AreNotDevicesThatComeBackAfterAWakeOrInAnotherMode) {
    const std::string bus = plug("usb1");
    const std::string key = plugInto(bus, "1-2", {{"serial", "4C530001\n"}});
    const std::string camera = plugInto(bus, "1-6", {{"removable", "fixed\n"}});
    open();
    const auto replug = [&](const std::string& serial, Seconds gap) {
        machine.announce(key, "remove");
        machine.remove(key);
        takeCalls();
        awake += gap;
        plugInto(bus, "1-2", {{"serial", serial + "\n"}});
        return takeCalls();
    };
    asleep += Seconds(3600);
    EXPECT_EQ(replug("4C530001", Seconds(4)), 0) << "back after hibernation";
    EXPECT_EQ(replug("other", Seconds(0.5)), 1) << "another one, just after";
    awake += Seconds(5.1);
    EXPECT_EQ(replug("other", Seconds(2)), 1) << "replugged long after the wake";
    EXPECT_EQ(replug("other", Seconds(0.8)), 0) << "a modem that changes its mode";

    machine.remove(camera);
    takeCalls();
    awake += Seconds(60);
    plugInto(bus, "1-6", {{"removable", "fixed\n"}});
    EXPECT_EQ(takeCalls(), 0) << "built in, switched off and on with a key";
}

}  // namespace
}  // namespace chimewerk
