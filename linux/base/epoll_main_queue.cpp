// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/epoll_main_queue.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <system_error>
#include <utility>

namespace chimewerk {

namespace {

// Keys by which epoll reports events; watches use kFirstWatch and above.
constexpr std::uint64_t kWakeUp = 0;
constexpr std::uint64_t kAlarm = 1;
constexpr std::uint64_t kFirstWatch = 2;

FileDescriptor orThrow(int descriptor, const char* what) {
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
    return FileDescriptor(descriptor);
}

std::chrono::steady_clock::duration toTicks(Seconds span) {
    return std::chrono::ceil<std::chrono::steady_clock::duration>(span);
}

void drain(const FileDescriptor& counter) {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto size = read(counter.get(), &count, sizeof count);
}

}  // namespace

/// Fires at whole multiples of its interval on the monotonic clock, so that timers whose intervals
/// are multiples of one another wake the processor together.
class EpollMainQueue::RepeatingTimer final : public Timer,
                                             public std::enable_shared_from_this<RepeatingTimer> {
public:
    RepeatingTimer(EpollMainQueue& queue, Seconds interval, Job job)
        : queue_(queue), interval_(toTicks(interval)), job_(std::move(job)) {}

    void invalidate() override { valid_ = false; }
    void sleep() override { asleep_ = true; }
    void wake() override {
        if (std::exchange(asleep_, false) && !scheduled_ && !running_) {
            scheduleNext();
        }
    }

    void start() {
        const auto wanted = (std::chrono::steady_clock::now() + interval_).time_since_epoch();
        scheduleAt(MonotonicTime((wanted + interval_ / 2) / interval_ * interval_));
    }

private:
    void scheduleNext() {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        scheduleAt(MonotonicTime((now / interval_ + 1) * interval_));
    }
    void scheduleAt(MonotonicTime due) {
        scheduled_ = true;
        queue_.schedule(due, [self = shared_from_this()] { self->fire(); });
    }
    void fire() {
        scheduled_ = false;
        if (valid_ && !asleep_) {
            running_ = true;
            job_();
            running_ = false;
        }
        if (!valid_) {
            job_ = nullptr;
        } else if (!asleep_) {
            scheduleNext();
        }
    }

    EpollMainQueue& queue_;
    const std::chrono::steady_clock::duration interval_;
    Job job_;
    bool valid_ = true;
    bool asleep_ = false;
    bool scheduled_ = false;
    bool running_ = false;
};

class EpollMainQueue::DescriptorWatch final : public Watch {
public:
    DescriptorWatch(EpollMainQueue& queue, int descriptor, std::uint64_t key)
        : queue_(queue), descriptor_(descriptor), key_(key) {}
    DescriptorWatch(const DescriptorWatch&) = delete;
    DescriptorWatch& operator=(const DescriptorWatch&) = delete;
    ~DescriptorWatch() override {
        epoll_ctl(queue_.epoll_.get(), EPOLL_CTL_DEL, descriptor_, nullptr);
        queue_.watched_.erase(key_);
    }

private:
    EpollMainQueue& queue_;
    const int descriptor_;
    const std::uint64_t key_;
};

EpollMainQueue::EpollMainQueue()
    : epoll_(orThrow(epoll_create1(EPOLL_CLOEXEC), "epoll_create1")),
      wakeUp_(orThrow(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd")),
      alarm_(
          orThrow(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK), "timerfd_create")),
      nextKey_(kFirstWatch) {
    add(wakeUp_, kWakeUp);
    add(alarm_, kAlarm);
}

EpollMainQueue::~EpollMainQueue() = default;

void EpollMainQueue::add(const FileDescriptor& descriptor, std::uint64_t key) {
    epoll_event event{.events = EPOLLIN, .data = {.u64 = key}};
    if (epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor.get(), &event) != 0) {
        throw std::system_error(errno, std::generic_category(), "epoll_ctl");
    }
}

void EpollMainQueue::post(Job job) {
    const std::lock_guard lock(postedLock_);
    if (posted_.empty()) {
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto size = write(wakeUp_.get(), &one, sizeof one);
    }
    posted_.push_back(std::move(job));
}

void EpollMainQueue::postAfter(Seconds delay, Job job) {
    schedule(std::chrono::steady_clock::now() + toTicks(delay), std::move(job));
}

std::shared_ptr<Timer> EpollMainQueue::every(Seconds interval, Job job) {
    auto timer = std::make_shared<RepeatingTimer>(*this, interval, std::move(job));
    timer->start();
    return timer;
}

std::unique_ptr<EpollMainQueue::Watch> EpollMainQueue::watch(int descriptor, Job job,
                                                             Trigger trigger) {
    const std::uint64_t key = nextKey_++;
    epoll_event event{.events = EPOLLIN, .data = {.u64 = key}};
    if (trigger == Trigger::edge) {
        event.events |= EPOLLET;
    }
    if (epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &event) != 0) {
        return nullptr;
    }
    watched_.emplace(key, std::make_shared<Job>(std::move(job)));
    return std::make_unique<DescriptorWatch>(*this, descriptor, key);
}

void EpollMainQueue::run() {
    quitting_ = false;
    while (!quitting_) {
        dispatchWithin(-1);
    }
}

void EpollMainQueue::dispatchWithin(int timeoutMilliseconds) {
    std::array<epoll_event, 16> events{};
    const int count = epoll_wait(epoll_.get(), events.data(), static_cast<int>(events.size()),
                                 timeoutMilliseconds);
    for (int i = 0; i < count && !quitting_; ++i) {
        const std::uint64_t key = events.at(static_cast<std::size_t>(i)).data.u64;
        if (key == kWakeUp) {
            runPosted();
        } else if (key == kAlarm) {
            runDue();
        } else if (const auto found = watched_.find(key); found != watched_.end()) {
            const auto job = found->second;  // The job may end its own watch.
            (*job)();
        }
    }
    // What these jobs have posted needs no wake-up of its own.
    if (count > 0 && !quitting_) {
        runPosted();
    }
}

void EpollMainQueue::runPosted() {
    std::vector<Job> jobs;
    {
        const std::lock_guard lock(postedLock_);
        if (posted_.empty()) {
            return;
        }
        drain(wakeUp_);
        jobs.swap(posted_);
    }
    for (Job& job : jobs) {
        job();
    }
}

void EpollMainQueue::runDue() {
    drain(alarm_);
    // Set so that jobs scheduled meanwhile do not move the alarm, which is set again at the end.
    armedFor_ = MonotonicTime::min();
    const auto now = std::chrono::steady_clock::now();
    while (!delayed_.empty() && delayed_.begin()->first <= now) {
        const Job job = std::move(delayed_.extract(delayed_.begin()).mapped());
        job();
    }
    armedFor_ = MonotonicTime::max();
    armAlarm();
}

void EpollMainQueue::schedule(MonotonicTime due, Job job) {
    delayed_.emplace(due, std::move(job));
    armAlarm();
}

void EpollMainQueue::armAlarm() {
    if (delayed_.empty() || delayed_.begin()->first >= armedFor_) {
        return;
    }
    armedFor_ = delayed_.begin()->first;
    const auto sinceBoot = armedFor_.time_since_epoch();
    const auto whole = std::chrono::floor<std::chrono::seconds>(sinceBoot);
    const itimerspec when{.it_interval = {},
                          .it_value = {.tv_sec = static_cast<time_t>(whole.count()),
                                       .tv_nsec = static_cast<long>((sinceBoot - whole).count())}};
    timerfd_settime(alarm_.get(), TFD_TIMER_ABSTIME, &when, nullptr);
}

}  // namespace chimewerk
