// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/keyboard_monitor.h"

#include <utility>

namespace chimewerk {

namespace {

constexpr Seconds kPermissionPollInterval{1.5};

}  // namespace

KeyboardMonitor::KeyboardMonitor(MainQueue& queue, KeySource& keys, PermissionPage& permissionPage,
                                 SoundManager& sounds)
    : keys_(keys), permissionPage_(permissionPage), sounds_(sounds), permissionPoll_(queue) {}

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
    permissionPoll_.stop();
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
    permissionPoll_.stop();
    permissionPoll_.start(kPermissionPollInterval, [this] {
        if (keys_.trusted()) {
            permissionPoll_.stop();
            createTap();
        }
    });
}

}  // namespace chimewerk
