#pragma once

#include <memory>
#include <string>

#include "app/windows.h"

namespace chimewerk {

/// Windows that only tell what is done with them: "dashboard made, dashboard shown, ".
class FakeWindows final : public WindowFactory {
public:
    std::string log;

    std::unique_ptr<Window> makeDashboard(AppDelegate& /*delegate*/) override {
        return make("dashboard");
    }
    std::unique_ptr<Window> makeHelpWindow() override { return make("help"); }

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
