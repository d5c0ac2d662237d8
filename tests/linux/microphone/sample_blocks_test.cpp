// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/microphone/sample_blocks.h"

#include <gtest/gtest.h>

#include <numeric>

namespace chimewerk {
namespace {

std::vector<float> counting(float from, std::size_t length) {
    std::vector<float> samples(length);
    std::iota(samples.begin(), samples.end(), from);
    return samples;
}

TEST(SampleBlocks, HaveOneLengthAndMissNothing) {
    for (const std::vector<std::size_t>& pieces :
         std::vector<std::vector<std::size_t>>{{8},
                                               {4, 4},
                                               {1, 1, 1, 1, 1, 1, 1, 1},
                                               {0, 3, 0, 5},
                                               {5, 3},
                                               {3, 4, 1},
                                               {9},
                                               {3, 9},
                                               {4, 7}}) {
        SampleBlocks blocks(4);
        std::vector<float> heard;
        const auto take = [&](std::span<const float> block) {
            EXPECT_EQ(block.size(), 4U);
            heard.insert(heard.end(), block.begin(), block.end());
        };
        float next = 0;
        for (const std::size_t length : pieces) {
            blocks.push(counting(next, length), take);
            next += static_cast<float>(length);
        }
        const std::size_t whole = static_cast<std::size_t>(next) / 4 * 4;
        EXPECT_EQ(heard, counting(0, whole)) << testing::PrintToString(pieces);
    }
}

TEST(SampleBlocks, DropSamplesFromBeforeAGap) {
    SampleBlocks blocks(4);
    std::vector<float> heard;
    const auto take = [&](std::span<const float> block) {
        heard.assign(block.begin(), block.end());
    };
    blocks.push(counting(0, 3), take);
    blocks.clear();
    blocks.push(counting(3, 4), take);
    EXPECT_EQ(heard, counting(3, 4));
}

}  // namespace
}  // namespace chimewerk
