#pragma once

#include <cstdint>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/links/bus_link.h"
#include "monitors/sleep_source.h"

namespace chimewerk {

/// Sleep and wake as logind tells them on the system bus. A delay inhibitor is held all the time, so that a
/// sleep waits for the answer to its message; answering closes it, and it is taken anew after the wake, when
/// a sleep was called off, and when logind or the bus has come back. An answer counts only for the sleep
/// whose message it belongs to. Who gets no inhibitor still hears of sleep and wake. Where there is no
/// logind, or none yet, nothing happens. Main thread only.
class LogindSleepSource final : public SleepSource {
public:
    /// The queue outlives the source.
    explicit LogindSleepSource(EpollMainQueue& queue);

    /// Always succeeds: logind may come later.
    bool registerHandler(Handler handler) override;
    void allowPowerChange(std::intptr_t argument) override;

private:
    void open(sd_bus* bus);
    void takeInhibitor(sd_bus* bus);
    void dropInhibitor();
    void startOver();
    void fallAsleep();
    void wake(sd_bus* bus);

    static int onPrepareForSleep(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onOwnerChanged(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onInhibited(sd_bus_message* reply, void* self, sd_bus_error* error);

    Handler handler_;
    /// Numbers the sleeps; the argument of their messages.
    std::intptr_t sleep_ = 0;
    /// Whether the system is on its way to sleep or asleep.
    bool isGoingToSleep_ = false;
    FileDescriptor inhibitor_;
    BusLink link_;
    BusSlot asking_;  // for the inhibitor; ends before the bus that it is asked on
};

}  // namespace chimewerk
