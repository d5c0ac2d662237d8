// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/file_reading.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "linux/base/text_parts.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FileReading, WaitsForNoPipeAndEndsAtTheBound) {
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    std::ofstream(folder.path() / "long") << std::string(10'000, 'a') << "z";
    ASSERT_EQ(mkfifo((path + "/pipe").c_str(), 0600), 0);

    EXPECT_EQ(readText(path + "/long"), std::string(10'000, 'a') + "z");
    EXPECT_EQ(readText(path + "/long", 5'000), std::string(5'000, 'a'));
    EXPECT_EQ(readText(path + "/pipe"), "");
    EXPECT_EQ(readText(path), std::nullopt);
    EXPECT_EQ(readText(path + "/absent"), std::nullopt);

    std::filesystem::create_symlink("long", folder.path() / "link");
    EXPECT_EQ(readLink(path + "/link"), "long");
    EXPECT_EQ(readLink(path + "/long"), "");
    EXPECT_THAT(namesIn(path), testing::UnorderedElementsAre("link", "long", "pipe"));
    EXPECT_THAT(namesIn(path + "/long"), IsEmpty());
}

TEST(TextParts, AreWhatStandsBetweenSeparatorsOrSpaces) {
    EXPECT_THAT(split(";a;;b c;", ';'), ElementsAre("", "a", "", "b c"));
    EXPECT_THAT(split("a;b", ';'), ElementsAre("a", "b"));
    EXPECT_THAT(split("", ';'), IsEmpty());
    EXPECT_THAT(words(" \ta  b;c\n"), ElementsAre("a", "b;c"));
    EXPECT_THAT(words(" \n"), IsEmpty());
}

}  // namespace
}  // namespace chimewerk
