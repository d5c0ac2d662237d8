// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "app/status_item.h"
#include "app/windows.h"
#include "support/journal.h"

namespace chimewerk {

/// A tray whose menu can be read and chosen from.
class FakeStatusItem final : public StatusItem, public Noting {
public:
    void show(const Menu& shown, std::function<void()> onActivated) override {
        note("menu");
        menu = &shown;
        onActivate = std::move(onActivated);
    }
    void showMute(bool isMuted) override { showsMute = isMuted; }
    bool isShown() const override { return true; }
    void whenShown(std::function<void()> job) override { onShown = std::move(job); }

    /// Returns the titles of the marked entries of submenus, each with a space behind it.
    std::string marked() const {
        std::string titles;
        for (const auto& item : *menu) {
            for (const auto& inner : item->submenu) {
                titles += inner->isOn ? inner->title + " " : "";
            }
        }
        return titles;
    }

    /// Runs the action of the entry with this title. Throws std::invalid_argument if there is none.
    void choose(std::string_view title) const { find(*menu, title)->action(); }

    const Menu* menu = nullptr;
    bool showsMute = false;
    std::function<void()> onActivate;
    std::function<void()> onShown;

private:
    static const MenuItem* find(const Menu& menu, std::string_view title) {
        for (const auto& item : menu) {
            if (item->title == title && item->action) {
                return item.get();
            }
            for (const auto& inner : item->submenu) {
                if (inner->title == title) {
                    return inner.get();
                }
            }
        }
        throw std::invalid_argument("nothing to choose under this title");
    }
};

/// Windows that only log: "dashboard made, dashboard shown, ".
class FakeWindows final : public WindowFactory {
public:
    std::string log;

    std::unique_ptr<Window> makeDashboard(AppDelegate& /*delegate*/) override {
        return make("dashboard");
    }
    std::unique_ptr<Window> makeHelpWindow(AppDelegate& /*delegate*/) override {
        return make("help");
    }
    std::unique_ptr<Window> makeMicrophoneQuestion(
        std::function<void(bool allowed)> answered) override {
        answer = std::move(answered);
        return make("question");
    }

    /// Answers the question about the microphone.
    std::function<void(bool allowed)> answer;

private:
    class FakeWindow final : public Window {
    public:
        FakeWindow(std::string& log, std::string name) : log_(log), name_(std::move(name)) {
            log_ += name_ + " made, ";
        }
        void showWindow() override { log_ += name_ + " shown, "; }

    private:
        std::string& log_;
        const std::string name_;
    };

    std::unique_ptr<Window> make(const char* name) {
        return std::make_unique<FakeWindow>(log, name);
    }
};

}  // namespace chimewerk
