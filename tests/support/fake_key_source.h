// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <utility>

#include "monitors/keyboard_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A keyboard on which the test presses keys, and a permission that it grants and revokes. Also the
/// page that asks for the permission.
class FakeKeySource final : public KeySource, public PermissionPage, public Noting {
public:
    bool mayListen = true;
    /// Whether `createTap()` succeeds.
    bool tapsCanBeMade = true;

    int pagesShown = 0;
    int tapsMade = 0;
    /// How often a tap was enabled.
    int enablings = 0;

    bool trusted() override { return mayListen; }
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override {
        note("keys");
        if (!tapsCanBeMade) {
            return nullptr;
        }
        ++tapsMade;
        return std::make_unique<FakeTap>(*this, std::move(callbacks));
    }
    void show() override { ++pagesShown; }

    /// Presses a key, which is reported only if a tap is enabled.
    void press(std::int64_t keyCode) {
        if (tap_ != nullptr && tap_->enabled) {
            tap_->callbacks.onKeyDown(keyCode);
        }
    }
    /// Disables the tap, as the system may do at any time.
    void disableTap() {
        tap_->enabled = false;
        tap_->callbacks.onDisabled();
    }
    bool tapExists() const { return tap_ != nullptr; }

private:
    struct FakeTap final : KeyTap {
        FakeTap(FakeKeySource& owner, KeyTapCallbacks calls)
            : source(owner), callbacks(std::move(calls)) {
            source.tap_ = this;
        }
        FakeTap(const FakeTap&) = delete;
        FakeTap& operator=(const FakeTap&) = delete;
        ~FakeTap() override {
            source.note("-keys");
            source.tap_ = nullptr;
        }
        void setEnabled(bool on) override {
            enabled = on;
            source.enablings += on ? 1 : 0;
        }

        FakeKeySource& source;
        KeyTapCallbacks callbacks;
        bool enabled = false;
    };

    FakeTap* tap_ = nullptr;
};

}  // namespace chimewerk
