// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/power/logind_sleep_source.h"

#include <fcntl.h>

#include <utility>

namespace chimewerk {

namespace {

constexpr const char* kLogind = "org.freedesktop.login1";
constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";

}  // namespace

LogindSleepSource::LogindSleepSource(EpollMainQueue& queue, Seconds retryInterval)
    : link_(queue, sd_bus_open_system,
            {.onOpen = [this](sd_bus* bus) { open(bus); }, .onLost = [this] { reset(); }},
            retryInterval) {}

bool LogindSleepSource::registerHandler(Handler handler) {
    handler_ = std::move(handler);
    link_.keepOpen();
    return true;
}

SourceReport LogindSleepSource::report() {
    if (inhibitor_ || isGoingToSleep_) {
        return {.mechanism = "logind"};
    }
    return {.mechanism = "no logind",
            .missing = "logind, which announces sleep and wake, does not answer.",
            .advice = "Install systemd or elogind, and log in through it."};
}

void LogindSleepSource::open(sd_bus* bus) {
    sd_bus_match_signal_async(bus, nullptr, kLogind, kManagerPath, kManager, "PrepareForSleep",
                              callMember<&LogindSleepSource::onPrepareForSleep>, nullptr, this);
    matchOwnerChanges(bus, kLogind, callMember<&LogindSleepSource::onOwnerChanged>, this);
    takeInhibitor(bus);
}

/// Asks logind for an inhibitor if logind is running; does not start it.
void LogindSleepSource::takeInhibitor(sd_bus* bus) {
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus, &call, kLogind, kManagerPath, kManager, "Inhibit") <
        0) {
        return;
    }
    const BusMessage owned(call);
    sd_bus_message_set_auto_start(call, 0);
    sd_bus_slot* request = nullptr;
    if (sd_bus_message_append(call, "ssss", "sleep", "Chimewerk",
                              "Plays the sound of the closing lid", "delay") >= 0 &&
        sd_bus_call_async(bus, &request, call, callMember<&LogindSleepSource::onInhibited>, this,
                          0) >= 0) {
        inhibitorRequest_.reset(request);
    }
}

void LogindSleepSource::onInhibited(sd_bus_message* reply) {
    int descriptor = -1;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read(reply, "h", &descriptor) >= 0) {
        // The message owns its descriptor and closes it.
        inhibitor_ = FileDescriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    }
}

/// Closes the inhibitor, and cancels a request for one.
void LogindSleepSource::dropInhibitor() {
    inhibitorRequest_ = nullptr;
    inhibitor_ = FileDescriptor();
}

/// Forgets a sleep in progress: logind, which announced it, is gone.
void LogindSleepSource::reset() {
    dropInhibitor();
    isGoingToSleep_ = false;
}

void LogindSleepSource::onOwnerChanged(sd_bus_message* signal) {
    const char* const owner = readNewOwner(signal);
    if (owner == nullptr) {
        return;
    }
    reset();
    if (*owner != '\0') {
        takeInhibitor(sd_bus_message_get_bus(signal));
    }
}

void LogindSleepSource::onPrepareForSleep(sd_bus_message* signal) {
    int begins = 0;
    if (sd_bus_message_read(signal, "b", &begins) < 0) {
        return;
    }
    if (begins != 0) {
        reportSleep();
    } else {
        reportWake(sd_bus_message_get_bus(signal));
    }
}

/// Reports the sleep. A repeated announcement belongs to the same sleep.
void LogindSleepSource::reportSleep() {
    if (!std::exchange(isGoingToSleep_, true)) {
        ++sleep_;
    }
    handler_(static_cast<std::uint32_t>(kIOPMSystemWillSleep), sleep_);
}

/// Reports the wake, and takes a new inhibitor. After a cancelled sleep the old one is still held.
void LogindSleepSource::reportWake(sd_bus* bus) {
    isGoingToSleep_ = false;
    if (!inhibitor_) {
        takeInhibitor(bus);
    }
    handler_(static_cast<std::uint32_t>(kIOPMSystemHasPoweredOn), sleep_);
}

void LogindSleepSource::allowPowerChange(std::intptr_t argument) {
    if (isGoingToSleep_ && argument == sleep_) {
        dropInhibitor();
    }
}

}  // namespace chimewerk
