// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Reports USB devices that are attached. Main thread only.
class UsbArrivalSource {
public:
    virtual ~UsbArrivalSource() = default;

    /// Calls `arrived` on the main thread after USB devices were attached, until `close()`. Devices
    /// that are already present are not reported. Devices that arrive together may share a call.
    /// Returns false, and never calls, if arrivals cannot be detected on this machine.
    virtual bool open(std::function<void()> arrived) = 0;

    /// Ends the calls at once.
    virtual void close() = 0;
};

/// Reports that USB devices were attached. Main thread only; call `stop()` before the source
/// is destroyed.
class USBMonitor {
public:
    USBMonitor(MainQueue& queue, UsbArrivalSource& devices);

    /// Called when one or more USB devices were attached.
    std::function<void()> onConnect;

    /// Whether `start()` has succeeded and `stop()` was not called. Arrivals are reported only
    /// while this is true.
    bool isSetup = false;

    /// Starts listening. Call once before `stop()`.
    void start();

    /// Stops listening.
    void stop();

private:
    void devicesArrived();

    MainQueue& queue_;
    UsbArrivalSource& devices_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
