#include "monitors/keyboard_monitor.h"

#include <utility>

namespace chimewerk {

namespace {

constexpr Seconds kPermissionPollInterval{1.5};

}  // namespace

KeyboardMonitor::KeyboardMonitor(MainQueue& queue, KeySource& keys, PermissionPage& permissionPage,
                                 SoundManager& sounds)
    : queue_(queue), keys_(keys), permissionPage_(permissionPage), sounds_(sounds) {}

void KeyboardMonitor::start() {
    if (active) {
        return;
    }
    if (keys_.trusted()) {
        createTap();
    } else {
        permissionPage_.show();
        waitForPermission();
    }
}

void KeyboardMonitor::stop() {
    endWait();
    if (tap) {
        tap->setEnabled(false);
        tap = nullptr;
    }
    active = false;
}

void KeyboardMonitor::restart() {
    stop();
    if (keys_.trusted()) {
        createTap();
    }
}

void KeyboardMonitor::handle(std::int64_t keyCode) {
    sounds_.playKey(keyCode);
}

void KeyboardMonitor::createTap() {
    auto created = keys_.createTap({
        .onKeyDown = lifeline_.guard([this](std::int64_t keyCode) { handle(keyCode); }),
        .onDisabled = lifeline_.guard([this] {
            if (tap) {
                tap->setEnabled(true);
            }
        }),
    });
    if (!created) {
        return;
    }
    tap = std::move(created);
    tap->setEnabled(true);
    active = true;
}

void KeyboardMonitor::waitForPermission() {
    endWait();
    permissionPoll_ = queue_.every(kPermissionPollInterval, lifeline_.guard([this] {
        if (keys_.trusted()) {
            endWait();
            createTap();
        }
    }));
}

void KeyboardMonitor::endWait() {
    if (permissionPoll_) {
        permissionPoll_->invalidate();
        permissionPoll_ = nullptr;
    }
}

}  // namespace chimewerk
