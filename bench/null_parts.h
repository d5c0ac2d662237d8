// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "monitors/keyboard_monitor.h"
#include "monitors/microphone.h"
#include "platform/main_queue.h"
#include "platform/sound_folder.h"
#include "platform/sound_service.h"

namespace chimewerk {

// Parts that do nothing, for benches that measure something else.

class NullSoundService final : public SoundService {
public:
    std::shared_ptr<Sound> soundFromFile(const std::string& /*path*/) override { return nullptr; }
    std::shared_ptr<Sound> soundNamed(std::string_view /*name*/) override { return nullptr; }
};

class NullMicrophone final : public Microphone {
public:
    Authorization authorization() override { return Authorization::denied; }
    void requestAccess(std::function<void(bool granted)> /*answered*/) override {}
    std::unique_ptr<AudioEngine> makeEngine() override { return nullptr; }
};

class NullKeys final : public KeySource, public PermissionPage {
public:
    bool trusted() override { return true; }
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks /*callbacks*/) override { return nullptr; }
    void show() override {}
};

class NullSoundFolder final : public SoundFolder {
public:
    std::unique_ptr<Addition> add(const std::string& /*file*/, Done /*done*/) override {
        return nullptr;
    }
};

/// Runs every job at the next `runAll()`, whatever its delay. One thread.
class ImpatientQueue final : public MainQueue {
public:
    void post(Job job) override { jobs_.push_back(std::move(job)); }
    void postAfter(Seconds /*delay*/, Job job) override { post(std::move(job)); }
    std::shared_ptr<Timer> every(Seconds /*interval*/, Job /*job*/) override {
        return std::make_shared<NullTimer>();
    }
    void runAll() {
        while (!jobs_.empty()) {
            for (const Job& job : std::exchange(jobs_, {})) {
                job();
            }
        }
    }

private:
    struct NullTimer final : Timer {
        void invalidate() override {}
        void sleep() override {}
        void wake() override {}
    };

    std::vector<Job> jobs_;
};

}  // namespace chimewerk
