#pragma once

#include <map>
#include <utility>

#include "monitors/app_launch_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// Launches that the test makes.
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

}  // namespace chimewerk
