#include "ui/rules/counter_text.h"

#include <gtest/gtest.h>

namespace chimewerk {
namespace {

TEST(TheCounterText, SaysTimeOnlyForOne) {
    EXPECT_EQ(counterText(0), "Not triggered yet");
    EXPECT_EQ(counterText(1), "Triggered: 1 time");
    EXPECT_EQ(counterText(7), "Triggered: 7 times");
    EXPECT_EQ(counterText(-1), "Triggered: -1 times");
    EXPECT_EQ(counterText(5'000'000'000), "Triggered: 5000000000 times");
}

}  // namespace
}  // namespace chimewerk
