// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/contrast.h"

#include <gtest/gtest.h>

namespace chimewerk {
namespace {

using namespace std::string_literals;

TEST(AHighContrastTheme, IsKnownByItsName) {
    for (const char* const name :
         {"HighContrast", "HighContrastInverse", "HighContrast:dark", "ContrastHighInverse"}) {
        EXPECT_TRUE(isHighContrastTheme(name)) << name;
    }
    for (const char* const name : {"", "Adwaita", "Adwaita-dark", "Greybird", "LowContrast"}) {
        EXPECT_FALSE(isHighContrastTheme(name)) << name;
    }
}

TEST(TheSettingsOfAnX11Desktop, NameTheThemeInBothByteOrders) {
    const std::string little =
        "\0\0\0\0\x07\0\0\0\x03\0\0\0"s
        "\0\0\x07\0Xft/DPI\0\0\0\0\0\0\x80\x01\0"s
        "\x02\0\x05\0Color\0\0\0\x01\0\0\0\1\1\2\2\3\3\4\4"s
        "\x01\0\x0d\0Net/ThemeName\0\0\0\0\0\0\0\x0c\0\0\0HighContrast"s;
    const std::string big =
        "\1\0\0\0\0\0\0\x07\0\0\0\x01"s
        "\x01\0\0\x0dNet/ThemeName\0\0\0\0\0\0\0\0\0\0\x05Yaru!\0\0\0"s;
    EXPECT_EQ(themeInXSettings(little), "HighContrast");
    EXPECT_EQ(themeInXSettings(big), "Yaru!");
    for (std::size_t size = 0; size < little.size(); ++size) {
        EXPECT_EQ(themeInXSettings(little.substr(0, size)), "") << size;
    }
    EXPECT_EQ(themeInXSettings("\0\0\0\0\0\0\0\0\xff\xff\xff\xff\x01\0\xff\xff"s), "");
}

}  // namespace
}  // namespace chimewerk
