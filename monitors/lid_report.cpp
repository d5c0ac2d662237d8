#include "monitors/lid_report.h"

namespace chimewerk {

std::optional<float> decodeLidReport(std::span<const std::uint8_t> report) {
    constexpr std::uint8_t kAngleReport = 1;
    constexpr unsigned kAngleBits = 0x1FF;
    if (report.size() < 3 || report[0] != kAngleReport) {
        return std::nullopt;
    }
    const unsigned degrees = ((unsigned{report[2]} << 8U) | report[1]) & kAngleBits;
    return static_cast<float>(degrees);
}

}  // namespace chimewerk
