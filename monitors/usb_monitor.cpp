// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/usb_monitor.h"

namespace chimewerk {

USBMonitor::USBMonitor(MainQueue& queue, UsbArrivalSource& devices)
    : queue_(queue), devices_(devices) {}

void USBMonitor::start() {
    isSetup = devices_.open(lifeline_.guard([this] { devicesArrived(); }));
}

void USBMonitor::stop() {
    devices_.close();
    isSetup = false;
}

void USBMonitor::devicesArrived() {
    if (!isSetup) {
        return;
    }
    queue_.post(lifeline_.guard([this] {
        if (onConnect) {
            onConnect();
        }
    }));
}

}  // namespace chimewerk
