// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// What the USB monitor hears of the machine. Main thread only.
class UsbArrivalSource {
public:
    virtual ~UsbArrivalSource() = default;

    /// Calls `arrived` on the main thread after USB devices were attached, from now until
    /// `close()`; devices that are there already are left out. Several that come together may share
    /// one call. Returns false, and never calls, when arrivals cannot be heard on this machine.
    virtual bool open(std::function<void()> arrived) = 0;

    /// Ends the calls at once.
    virtual void close() = 0;
};

/// Reports USB devices being attached. Main thread only; call `stop()` before the source goes away.
class USBMonitor {
public:
    USBMonitor(MainQueue& queue, UsbArrivalSource& devices);

    /// A USB device was attached, or several at once.
    std::function<void()> onConnect;

    /// True between a `start()` that succeeded and `stop()`; arrivals are reported only while it
    /// is true.
    bool isSetup = false;

    /// Begins to listen. Call it once before `stop()`.
    void start();

    /// Ends the listening.
    void stop();

private:
    void devicesArrived();

    MainQueue& queue_;
    UsbArrivalSource& devices_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
