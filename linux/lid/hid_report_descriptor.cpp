// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/hid_report_descriptor.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace chimewerk {

namespace {

constexpr std::uint8_t kLongItem = 0xFE;

// The kernel has the same limits.
constexpr std::uint32_t kMaxReportSize = 256;
constexpr std::uint32_t kMaxReportCount = 12288;
constexpr std::size_t kMaxDepth = 64;

/// The kinds of short items: the upper six bits of their first byte.
enum class Item : std::uint8_t {
    feature = 0xB0,
    collection = 0xA0,
    endCollection = 0xC0,
    input = 0x80,
    output = 0x90,
    usagePage = 0x04,
    logicalMinimum = 0x14,
    reportSize = 0x74,
    reportId = 0x84,
    reportCount = 0x94,
    push = 0xA4,
    pop = 0xB4,
    usage = 0x08,
};

/// The data of an item: up to four bytes, little-endian.
struct ItemData {
    std::span<const std::uint8_t> bytes;

    std::uint32_t asUnsigned() const {
        std::uint32_t value = 0;
        for (std::size_t i = bytes.size(); i > 0; --i) {
            value = (value << 8U) | bytes[i - 1];
        }
        return value;
    }
    std::int32_t asSigned() const {
        if (bytes.empty()) {
            return 0;
        }
        const auto unused = static_cast<unsigned>(32 - 8 * bytes.size());
        return static_cast<std::int32_t>(asUnsigned() << unused) >> unused;
    }
};

/// Processes the items of a descriptor in order. Member functions that return bool return false if
/// the descriptor is malformed.
class DescriptorReader {
public:
    bool take(Item item, ItemData data);
    /// Returns whether every opened collection has been closed.
    bool isComplete() const { return open_.empty(); }
    std::vector<HidCollection> collections() && { return std::move(collections_); }

private:
    /// Values that stay in force until they are changed.
    struct Globals {
        std::uint32_t usagePage = 0;
        std::int32_t logicalMinimum = 0;
        std::uint32_t reportSize = 0;
        std::uint32_t reportCount = 0;
        std::uint8_t reportId = 0;
    };
    /// A usage as written. A short one gets its page from the state at the next main item.
    struct WrittenUsage {
        std::uint32_t value;
        bool isComplete;
    };

    HidUsage complete(const WrittenUsage& usage) const {
        return usage.isComplete ? usage.value : (globals_.usagePage << 16U) | usage.value;
    }
    bool openCollection();
    bool closeCollection();
    bool takeFeature(std::uint32_t flags);
    void takeInput(std::uint32_t flags);
    bool pop();

    Globals globals_;
    std::vector<Globals> pushed_;
    std::vector<WrittenUsage> usages_;
    /// The usages of the open collections, the outermost first.
    std::vector<HidUsage> open_;
    std::map<std::uint8_t, std::size_t> featureBits_;
    /// The input reports of which some bits have been declared.
    std::set<std::uint8_t> begunInputs_;
    std::vector<HidCollection> collections_;
};

bool DescriptorReader::take(Item item, ItemData data) {
    bool sensible = true;
    switch (item) {
        case Item::usage:
            usages_.push_back({data.asUnsigned(), data.bytes.size() == 4});
            return true;
        case Item::usagePage:
            globals_.usagePage = data.asUnsigned();
            return true;
        case Item::logicalMinimum:
            globals_.logicalMinimum = data.asSigned();
            return true;
        case Item::reportSize:
            globals_.reportSize = data.asUnsigned();
            return globals_.reportSize <= kMaxReportSize;
        case Item::reportCount:
            globals_.reportCount = data.asUnsigned();
            return globals_.reportCount <= kMaxReportCount;
        case Item::reportId:
            globals_.reportId = static_cast<std::uint8_t>(data.asUnsigned());
            return data.asUnsigned() >= 1 && data.asUnsigned() <= 0xFF;
        case Item::push:
            pushed_.push_back(globals_);
            return pushed_.size() <= kMaxDepth;
        case Item::pop:
            return pop();
        case Item::collection:
            sensible = openCollection();
            break;
        case Item::endCollection:
            sensible = closeCollection();
            break;
        case Item::feature:
            sensible = takeFeature(data.asUnsigned());
            break;
        case Item::input:
            takeInput(data.asUnsigned());
            break;
        case Item::output:
            break;
        default:  // Limits, units and names are not needed.
            return true;
    }
    usages_.clear();  // Usages apply to one main item only.
    return sensible;
}

bool DescriptorReader::openCollection() {
    const HidUsage usage = usages_.empty() ? 0 : complete(usages_.front());
    if (open_.empty()) {
        collections_.push_back({.usage = usage, .features = {}});
    }
    open_.push_back(usage);
    return open_.size() <= kMaxDepth;
}

bool DescriptorReader::closeCollection() {
    if (open_.empty()) {
        return false;
    }
    open_.pop_back();
    return true;
}

bool DescriptorReader::pop() {
    if (pushed_.empty()) {
        return false;
    }
    globals_ = pushed_.back();
    pushed_.pop_back();
    return true;
}

bool DescriptorReader::takeFeature(std::uint32_t flags) {
    constexpr std::uint32_t kConstant = 1;
    constexpr std::uint32_t kVariable = 2;
    if (open_.empty()) {
        return false;
    }
    std::size_t& bits = featureBits_[globals_.reportId];
    const std::size_t firstBit = bits;
    bits += std::size_t{globals_.reportSize} * globals_.reportCount;
    if ((flags & kConstant) != 0 || globals_.reportSize < 1 || globals_.reportSize > 32) {
        return true;
    }
    const auto add = [&](HidUsage usage, std::size_t index, bool isChoice) {
        collections_.back().features.push_back({.usage = usage,
                                                .reportId = globals_.reportId,
                                                .firstBit = firstBit + index * globals_.reportSize,
                                                .bits = globals_.reportSize,
                                                .logicalMinimum = globals_.logicalMinimum,
                                                .isChoice = isChoice});
    };
    if ((flags & kVariable) == 0) {
        if (globals_.reportCount > 0) {
            add(open_.back(), 0, true);
        }
        return true;
    }
    for (std::size_t i = 0; i < std::min<std::size_t>(usages_.size(), globals_.reportCount); ++i) {
        add(complete(usages_[i]), i, false);
    }
    return true;
}

void DescriptorReader::takeInput(std::uint32_t flags) {
    constexpr std::uint32_t kConstant = 1;
    const bool isEmpty = globals_.reportSize == 0 || globals_.reportCount == 0;
    if (open_.empty() || isEmpty || !begunInputs_.insert(globals_.reportId).second) {
        return;
    }
    if ((flags & kConstant) == 0) {
        collections_.back().inputs.push_back(
            {.reportId = globals_.reportId, .bits = globals_.reportSize});
    }
}

/// Removes the next item from `rest` and passes it to `reader`; skips long items.
bool takeItem(std::span<const std::uint8_t>& rest, DescriptorReader& reader) {
    const std::uint8_t first = rest[0];
    std::size_t header = 1;
    std::size_t size = first & 3U;
    if (first == kLongItem) {
        if (rest.size() < 2) {
            return false;
        }
        header = 3;
        size = rest[1];
    } else if (size == 3) {
        size = 4;
    }
    if (rest.size() < header + size) {
        return false;
    }
    const ItemData data{rest.subspan(header, size)};
    rest = rest.subspan(header + size);
    return first == kLongItem || reader.take(static_cast<Item>(first & 0xFCU), data);
}

}  // namespace

std::vector<HidCollection> readHidReportDescriptor(std::span<const std::uint8_t> descriptor) {
    DescriptorReader reader;
    while (!descriptor.empty()) {
        if (!takeItem(descriptor, reader)) {
            return {};
        }
    }
    return reader.isComplete() ? std::move(reader).collections() : std::vector<HidCollection>{};
}

}  // namespace chimewerk
