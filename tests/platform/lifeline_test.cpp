// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/lifeline.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace chimewerk {
namespace {

TEST(TheLifeline, RunsAJobOnlyWhileItsOwnerExists) {
    int sum = 0;
    auto lifeline = std::make_optional<Lifeline>();
    const std::function<void(int)> job = lifeline->guard([&](int value) { sum += value; });
    job(3);
    lifeline.reset();
    job(4);
    EXPECT_EQ(sum, 3);
}

}  // namespace
}  // namespace chimewerk
