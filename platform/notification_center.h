// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace chimewerk {

/// An announcement to the observers of its name.
struct Notification {
    std::string_view name;
    /// The subject; empty if the name says all.
    std::any object = {};
    /// Further facts by name.
    std::map<std::string, std::any> userInfo = {};
};

/// In-process publish and subscribe by name. Main thread only.
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification&)>;

    /// Ends the observation when it is destroyed. May outlive the centre.
    class Subscription {
    public:
        Subscription() = default;
        explicit Subscription(std::shared_ptr<Observer> observer)
            : observer_(std::move(observer)) {}

    private:
        std::shared_ptr<Observer> observer_;
    };

    /// Calls `observer` for each later notification of this name, in the order of subscription,
    /// while the returned subscription is held.
    [[nodiscard]] Subscription observe(std::string_view name, Observer observer);

    /// Calls every observer of the notification's name, then returns. An observer may subscribe,
    /// and may unsubscribe itself or others. An observer that subscribes during a post is not
    /// called for that post.
    void post(const Notification& notification);

private:
    std::multimap<std::string, std::weak_ptr<Observer>, std::less<>> observers_;
};

}  // namespace chimewerk
