// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/status_item.h"
#include "app/windows.h"
#include "monitors/keyboard_monitor.h"
#include "platform/sound_service.h"

namespace chimewerk {

// What takes the place of icon, windows and sounds in a program that only looks what it finds.

class NoStatusItem final : public StatusItem {
public:
    void show(const Menu& /*menu*/, std::function<void()> /*onActivate*/) override {}
    void showMute(bool /*isMuted*/) override {}
    bool isShown() const override { return false; }
    void whenShown(std::function<void()> /*job*/) override {}
};

class NoWindows final : public WindowFactory {
public:
    std::unique_ptr<Window> makeDashboard(AppDelegate& /*delegate*/) override {
        return std::make_unique<NoWindow>();
    }
    std::unique_ptr<Window> makeHelpWindow(AppDelegate& /*delegate*/) override {
        return std::make_unique<NoWindow>();
    }
    std::unique_ptr<Window> makeMicrophoneQuestion(
        std::function<void(bool allowed)> /*answered*/) override {
        return std::make_unique<NoWindow>();
    }

private:
    class NoWindow final : public Window {
    public:
        void showWindow() override {}
    };
};

class NoSounds final : public SoundService {
public:
    std::shared_ptr<Sound> soundFromFile(const std::string& /*path*/) override { return nullptr; }
    std::shared_ptr<Sound> soundNamed(std::string_view /*name*/) override { return nullptr; }
};

class NoPermissionPage final : public PermissionPage {
public:
    void show() override {}
};

}  // namespace chimewerk
