// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/usb_monitor.h"

#include <gtest/gtest.h>

#include "support/fake_sources.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

class TheUsbMonitor : public testing::Test {
protected:
    TheUsbMonitor() {
        monitor.onConnect = [this] { ++connects; };
    }
    int plugAndRun() {
        devices.plug();
        queue.runPosted();
        return connects;
    }

    VirtualMainQueue queue;
    FakeUsbArrivalSource devices;
    USBMonitor monitor{queue, devices};
    int connects = 0;
};

TEST_F(TheUsbMonitor, ReportsArrivalsWhileStartedAfterTheSourceHasReturned) {
    monitor.stop();
    EXPECT_EQ(plugAndRun(), 0);
    monitor.start();
    EXPECT_TRUE(monitor.isSetup);
    devices.plug();
    EXPECT_EQ(connects, 0);
    queue.runPosted();
    EXPECT_EQ(connects, 1);
    EXPECT_EQ(plugAndRun(), 2);
    monitor.isSetup = false;
    EXPECT_EQ(plugAndRun(), 2);
    monitor.stop();
    EXPECT_FALSE(monitor.isSetup);
    EXPECT_FALSE(devices.isOpen());
    EXPECT_EQ(plugAndRun(), 2);
}

TEST_F(TheUsbMonitor, IsNotSetUpWhereArrivalsAreNotReported) {
    devices.works = false;
    monitor.start();
    EXPECT_FALSE(monitor.isSetup);
    devices.works = true;
    monitor.start();
    EXPECT_EQ(plugAndRun(), 1);
}

}  // namespace
}  // namespace chimewerk
