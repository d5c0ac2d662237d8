#pragma once

#include <memory>
#include <mutex>
#include <span>
#include <string>

#include "linux/decoding/decoder.h"

namespace chimewerk {

/// The decoder for M4A, which weighs a hundred shared libraries and so lives in a module of its own that is
/// loaded when the first M4A is opened, and stays. Without the module there is no M4A. Any thread.
class M4aModule {
public:
    explicit M4aModule(std::string path) : path_(std::move(path)) {}

    /// Whether the bytes begin like an M4A.
    static bool recognises(std::span<const std::byte> bytes);
    /// Null when it cannot be decoded, or the module is missing.
    std::unique_ptr<Decoder> open(const VisibleFile& file);

private:
    using OpenFunction = Decoder* (*)(const VisibleFile* file);

    const std::string path_;
    std::once_flag loading_;
    OpenFunction open_ = nullptr;
};

}  // namespace chimewerk
