// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/notification_center.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace chimewerk {
namespace {

TEST(TheNotificationCenter, CallsTheObserversOfANameInOrderWhileTheySubscribe) {
    NotificationCenter center;
    std::vector<std::string> received;
    const auto first = center.observe("a", [&](const Notification& n) {
        received.push_back("first " + std::any_cast<std::string>(n.object));
    });
    auto second = std::optional(
        center.observe("a", [&](const Notification&) { received.emplace_back("second"); }));
    const auto other =
        center.observe("b", [&](const Notification&) { received.emplace_back("other"); });

    center.post({.name = "a", .object = std::string("x")});
    second.reset();
    center.post({.name = "a", .object = std::string("y")});

    EXPECT_EQ(received, (std::vector<std::string>{"first x", "second", "first y"}));
}

TEST(TheNotificationCenter, LetsObserversSubscribeAndUnsubscribeDuringAPost) {
    NotificationCenter center;
    int late = 0;
    int victim = 0;
    std::vector<NotificationCenter::Subscription> held;
    auto toEnd = std::optional<NotificationCenter::Subscription>();
    const auto meddler = center.observe("a", [&](const Notification&) {
        toEnd.reset();
        held.push_back(center.observe("a", [&](const Notification&) { ++late; }));
    });
    toEnd = center.observe("a", [&](const Notification&) { ++victim; });

    center.post({.name = "a"});

    EXPECT_EQ(victim, 0);
    EXPECT_EQ(late, 0);
    center.post({.name = "a"});
    EXPECT_EQ(late, 1);
}

}  // namespace
}  // namespace chimewerk
