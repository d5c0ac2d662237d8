// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/bus/bus_link.h"
#include "linux/launches/launch_facts.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Reports processes that take a well-known name on the session bus, as applications do that the bus
/// has started. The bus may come late, go away and come back. Main thread only; must not be
/// destroyed from within its callback.
class BusNameLaunches {
public:
    using OnName = std::function<void(LaunchSign)>;

    /// `onName` runs on the main thread, a moment after a name that nobody had was taken. The queue
    /// must outlive the object. `retryInterval` is the time between two attempts to reach the bus.
    BusNameLaunches(EpollMainQueue& queue, OnName onName, Seconds retryInterval = kRetryInterval);

    /// Reports the sign again as soon as its application has a window, if that is within half a
    /// minute. GTK applications tell the bus of their windows; others are not reported again.
    void awaitWindow(const LaunchSign& sign);

private:
    struct Question;

    void onOwnerChanged(sd_bus_message* signal);
    void askForProcess(const std::string& name);
    void askForWindow(const LaunchSign& sign, int looks);
    /// Calls a method and gives its answer to a member of the question.
    template <auto onAnswer>
    void ask(std::unique_ptr<Question> question, const std::string& service,
             const std::string& path, const char* interface, const char* method,
             const char* argument = nullptr);

    EpollMainQueue& queue_;
    const OnName onName_;
    /// Null while the bus is away.
    sd_bus* bus_ = nullptr;
    BusLink link_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
