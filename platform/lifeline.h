// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <utility>

namespace chimewerk {

/// Disables jobs that outlive their owner. Make it the last member of the owner, so that it is
/// destroyed first:
///
///     queue.postAfter(delay, lifeline_.guard([this] { release(); }));
///
/// The job does nothing once the owner has been destroyed. Both must live on one thread.
class Lifeline {
public:
    Lifeline() = default;
    Lifeline(const Lifeline&) = delete;
    Lifeline& operator=(const Lifeline&) = delete;

    /// Wraps `function` so that calls do nothing once this object has been destroyed.
    template <typename Function>
    auto guard(Function function) const {
        return [alive = std::weak_ptr<const char>(token_),
                function = std::move(function)](auto&&... arguments) mutable {
            if (!alive.expired()) {
                function(std::forward<decltype(arguments)>(arguments)...);
            }
        };
    }

private:
    std::shared_ptr<const char> token_ = std::make_shared<const char>();
};

}  // namespace chimewerk
