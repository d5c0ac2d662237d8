#pragma once

#include <memory>
#include <utility>

namespace chimewerk {

/// Lets jobs that may outlive their owner find out that it is gone. A member of the owner, declared last so
/// that it ends first:
///
///     queue.postAfter(delay, lifeline_.guard([this] { release(); }));
///
/// The job does nothing once the owner has been destroyed. Both must live on one thread.
class Lifeline {
public:
    Lifeline() = default;
    Lifeline(const Lifeline&) = delete;
    Lifeline& operator=(const Lifeline&) = delete;

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
