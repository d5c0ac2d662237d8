// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/contrast.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace chimewerk {

namespace {

/// Reads numbers of the writer's byte order, and texts padded to four bytes. Past the end all
/// numbers are 0 and all texts empty.
class XSettingsReader {
public:
    explicit XSettingsReader(std::string_view bytes)
        : rest_(bytes), isBigEndian_(!bytes.empty() && bytes[0] != 0) {}

    bool atEnd() const { return rest_.empty(); }
    std::uint32_t number(std::size_t size) {
        std::uint32_t value = 0;
        std::string read(take(size));
        if (!isBigEndian_) {
            std::ranges::reverse(read);
        }
        for (const char byte : read) {
            value = value << 8U | static_cast<unsigned char>(byte);
        }
        return value;
    }
    std::string_view text(std::size_t size) {
        const std::string_view read = take(size);
        take((4 - size % 4) % 4);
        return read;
    }
    void skip(std::size_t size) { take(size); }

private:
    std::string_view take(std::size_t size) {
        if (size > rest_.size()) {
            rest_ = {};
            return {};
        }
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }

    std::string_view rest_;
    const bool isBigEndian_;
};

}  // namespace

bool isHighContrastTheme(std::string_view name) {
    constexpr std::array<std::string_view, 2> kBeginnings{"HighContrast", "ContrastHigh"};
    return std::ranges::any_of(kBeginnings,
                               [name](std::string_view begin) { return name.starts_with(begin); });
}

std::string themeInXSettings(std::string_view bytes) {
    enum Type : std::uint8_t { integer, text, color };
    constexpr std::size_t kHeader = 8;
    XSettingsReader reader(bytes);
    reader.skip(kHeader);
    std::uint32_t left = reader.number(4);
    for (; left > 0 && !reader.atEnd(); --left) {
        const std::uint32_t type = reader.number(1);
        reader.skip(1);
        const std::string_view name = reader.text(reader.number(2));
        reader.skip(4);  // The serial number of its last change.
        if (type == text) {
            const std::string_view value = reader.text(reader.number(4));
            if (name == "Net/ThemeName") {
                return std::string(value);
            }
        } else {
            reader.skip(type == color ? 8 : 4);
        }
    }
    return {};
}

}  // namespace chimewerk
