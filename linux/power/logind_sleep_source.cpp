#include "linux/power/logind_sleep_source.h"

#include <fcntl.h>

#include <utility>

namespace chimewerk {

namespace {

constexpr const char* kLogind = "org.freedesktop.login1";
constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";

}  // namespace

LogindSleepSource::LogindSleepSource(EpollMainQueue& queue)
    : link_(queue, sd_bus_open_system,
            {.onOpen = [this](sd_bus* bus) { open(bus); }, .onLost = [this] { startOver(); }}) {}

bool LogindSleepSource::registerHandler(Handler handler) {
    handler_ = std::move(handler);
    link_.keepOpen();
    return true;
}

void LogindSleepSource::open(sd_bus* bus) {
    sd_bus_match_signal_async(bus, nullptr, kLogind, kManagerPath, kManager, "PrepareForSleep",
                              onPrepareForSleep, nullptr, this);
    matchOwnerChanges(bus, kLogind, onOwnerChanged, this);
    takeInhibitor(bus);
}

/// Asks logind for it, if there is a logind; it is not to be started for us.
void LogindSleepSource::takeInhibitor(sd_bus* bus) {
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus, &call, kLogind, kManagerPath, kManager, "Inhibit") <
        0) {
        return;
    }
    const BusMessage owned(call);
    sd_bus_message_set_auto_start(call, 0);
    sd_bus_slot* asking = nullptr;
    if (sd_bus_message_append(call, "ssss", "sleep", "Chimewerk",
                              "Plays the sound of the closing lid", "delay") >= 0 &&
        sd_bus_call_async(bus, &asking, call, onInhibited, this, 0) >= 0) {
        asking_.reset(asking);
    }
}

int LogindSleepSource::onInhibited(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
    int descriptor = -1;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read(reply, "h", &descriptor) >= 0) {
        // The message closes its own.
        static_cast<LogindSleepSource*>(self)->inhibitor_ =
            FileDescriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    }
    return 0;
}

/// Also the one that is still on its way: when it arrives, nobody keeps it.
void LogindSleepSource::dropInhibitor() {
    asking_ = nullptr;
    inhibitor_ = FileDescriptor();
}

/// Whoever had sent the system to sleep is gone.
void LogindSleepSource::startOver() {
    dropInhibitor();
    isGoingToSleep_ = false;
}

int LogindSleepSource::onOwnerChanged(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
    auto& source = *static_cast<LogindSleepSource*>(self);
    const char* owner = nullptr;
    if (sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) >= 0) {
        source.startOver();
        if (*owner != '\0') {
            source.takeInhibitor(sd_bus_message_get_bus(signal));
        }
    }
    return 0;
}

int LogindSleepSource::onPrepareForSleep(sd_bus_message* signal, void* self,
                                         sd_bus_error* /*error*/) {
    auto& source = *static_cast<LogindSleepSource*>(self);
    int begins = 0;
    if (sd_bus_message_read(signal, "b", &begins) < 0) {
        return 0;
    }
    if (begins != 0) {
        source.fallAsleep();
    } else {
        source.wake(sd_bus_message_get_bus(signal));
    }
    return 0;
}

/// A message that is repeated belongs to the same sleep, which then waits no longer for it.
void LogindSleepSource::fallAsleep() {
    if (!std::exchange(isGoingToSleep_, true)) {
        ++sleep_;
    }
    handler_(static_cast<std::uint32_t>(kIOPMSystemWillSleep), sleep_);
}

/// An inhibitor that has not been let go of, because the sleep was called off, is still good.
void LogindSleepSource::wake(sd_bus* bus) {
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
