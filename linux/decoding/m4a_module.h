// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "linux/base/module.h"
#include "linux/decoding/decoder.h"

namespace chimewerk {

/// Opens M4A files. Their decoder needs about a hundred shared libraries, so it is a module that is
/// loaded when the first M4A is opened, and never unloaded. Without the module no M4A can be
/// opened, nor with the module of another version. Any thread.
class M4aModule {
public:
    explicit M4aModule(std::string path) : module_(std::move(path)) {}

    /// Returns null if the file cannot be decoded or the module is missing. The file must outlive
    /// the decoder.
    std::unique_ptr<Decoder> open(ByteStream& file);

private:
    using OpenFunction = Decoder* (*)(ByteStream* file);

    Module module_;
    std::once_flag loading_;
    OpenFunction open_ = nullptr;
};

}  // namespace chimewerk
