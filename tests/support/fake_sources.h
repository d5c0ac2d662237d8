// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "monitors/app_launch_monitor.h"
#include "monitors/brightness_monitor.h"
#include "monitors/network_monitor.h"
#include "monitors/trash_monitor.h"
#include "monitors/usb_monitor.h"
#include "monitors/volume_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// Launches that the test triggers.
class FakeAppLaunchSource final : public AppLaunchSource, public Noting {
public:
    Token addObserver(std::function<void()> onLaunch) override {
        note("launches");
        observers_.emplace(++lastToken_, std::move(onLaunch));
        return lastToken_;
    }
    void removeObserver(Token token) override {
        note("-launches");
        observers_.erase(token);
    }

    void launch() {
        for (const auto& [token, observer] : observers_) {
            observer();
        }
    }
    std::size_t observers() const { return observers_.size(); }

private:
    std::map<Token, std::function<void()>> observers_;
    Token lastToken_ = 0;
};

/// A display whose brightness the test sets.
class FakeBrightnessSource final : public BrightnessSource, public Noting {
public:
    std::optional<float> level;

    std::optional<float> brightness() override {
        note("display");
        return level;
    }
};

/// A default output device whose volumes the test sets; with neither there is no device.
class FakeOutputVolumeSource final : public OutputVolumeSource, public Noting {
public:
    std::optional<float> main;
    std::optional<float> firstChannel;

    std::optional<float> volume(Element element) override {
        note("output");
        return element == Element::main ? main : firstChannel;
    }
};

/// A network that the test plugs and unplugs.
class FakeReachabilitySource final : public ReachabilitySource, public Noting {
public:
    bool plugged = false;
    bool isOpen = false;

    void open() override {
        note("network");
        isOpen = true;
    }
    void close() override {
        note("-network");
        isOpen = false;
    }
    bool isReachable() override { return isOpen && plugged; }
};

/// A trash that only knows its item count, and announces its changes. Counts wait until the test
/// answers them, or are answered at once.
class FakeTrashSource final : public TrashSource, public Noting {
public:
    double modified = 1000.0;
    std::int64_t items = 0;
    /// Whether counts are answered at once with `items`.
    bool countsAtOnce = true;

    /// Whether a disk has appeared or disappeared.
    bool hasOtherVolumes = false;

    bool volumesChanged() override { return std::exchange(hasOtherVolumes, false); }
    bool announcesChanges() const override { return true; }
    double modificationTime() override {
        note("trash");
        return modified;
    }
    void countItems(CountCompletion completion) override {
        ++countsBegun;
        if (countsAtOnce) {
            completion(items);
        } else {
            waiting_.push_back(std::move(completion));
        }
    }

    int countsBegun = 0;

    /// Adds this many items (removes them if negative) and touches the folder.
    void change(std::int64_t by) {
        items += by;
        setModified(modified + 1.0);
    }
    void setModified(double time) {
        modified = time;
        announce();
    }
    /// Answers the oldest waiting count.
    void answer(std::optional<std::int64_t> count) {
        const CountCompletion completion = std::move(waiting_.front());
        waiting_.pop_front();
        completion(count);
    }
    std::size_t waiting() const { return waiting_.size(); }

private:
    std::deque<CountCompletion> waiting_;
};

/// USB devices that the test plugs in.
class FakeUsbArrivalSource final : public UsbArrivalSource, public Noting {
public:
    /// Whether arrivals are reported.
    bool works = true;

    bool open(std::function<void()> arrived) override {
        note("usb");
        arrived_ = works ? std::move(arrived) : nullptr;
        return works;
    }
    void close() override {
        note("-usb");
        arrived_ = nullptr;
    }

    bool isOpen() const { return arrived_ != nullptr; }
    /// Attaches a device.
    void plug() {
        if (arrived_) {
            arrived_();
        }
    }

private:
    std::function<void()> arrived_;
};

}  // namespace chimewerk
