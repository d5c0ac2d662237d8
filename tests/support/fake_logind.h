// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "linux/bus/bus_link.h"
#include "support/fake_bus_service.h"

namespace chimewerk {

/// A fake logind on the system bus that lets programs delay sleep. Runs on the test's queue. Its
/// inhibitors are real pipes whose other end it keeps.
class FakeLogind final : public FakeBusService {
public:
    explicit FakeLogind(EpollMainQueue& queue)
        : FakeBusService(queue, sd_bus_open_system, "org.freedesktop.login1",
                         "/org/freedesktop/login1"),
          queue_(queue) {}

    /// The last request: what, who, mode.
    std::string wanted;
    /// Number of inhibitor requests.
    int asked = 0;
    /// If set, requests wait for `answer()`.
    bool isSlow = false;

    /// Returns the number of inhibitors held.
    std::size_t held() const { return inhibitors_.size(); }
    /// Answers the waiting requests.
    void answer() {
        for (const BusMessage& call : std::exchange(waiting_, {})) {
            grant(call.get());
        }
    }
    void prepareForSleep(bool begins) { emit(kManager, "PrepareForSleep", "b", begins ? 1 : 0); }

private:
    static constexpr const char* kManager = "org.freedesktop.login1.Manager";

    /// Released when the other end is closed.
    struct Inhibitor {
        FileDescriptor end;
        std::unique_ptr<EpollMainQueue::Watch> watch;
    };

    void grant(sd_bus_message* call) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) {
            return;
        }
        const FileDescriptor theirs(ends[1]);
        auto inhibitor = std::make_unique<Inhibitor>();
        Inhibitor* const id = inhibitor.get();
        id->end = FileDescriptor(ends[0]);
        id->watch = queue_.watch(ends[0], [this, id] {
            queue_.post([this, id] {
                std::erase_if(inhibitors_, [id](const auto& known) { return known.get() == id; });
            });
        });
        inhibitors_.push_back(std::move(inhibitor));
        sd_bus_reply_method_return(call, "h", theirs.get());
        sd_bus_flush(bus());
    }

    int answer(sd_bus_message* call) override {
        const char* what = nullptr;
        const char* who = nullptr;
        const char* mode = nullptr;
        if (sd_bus_message_is_method_call(call, kManager, "Inhibit") == 0 ||
            sd_bus_message_read(call, "ssss", &what, &who, nullptr, &mode) < 0) {
            return 0;
        }
        ++asked;
        wanted = std::string(what) + " " + who + " " + mode;
        if (isSlow) {
            waiting_.emplace_back(sd_bus_message_ref(call));
        } else {
            grant(call);
        }
        return 1;
    }

    EpollMainQueue& queue_;
    std::vector<std::unique_ptr<Inhibitor>> inhibitors_;
    std::vector<BusMessage> waiting_;
};

}  // namespace chimewerk
