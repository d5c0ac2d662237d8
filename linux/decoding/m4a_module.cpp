// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/m4a_module.h"

namespace chimewerk {

std::unique_ptr<Decoder> M4aModule::open(ByteStream& file) {
    std::call_once(loading_,
                   [this] { open_ = module_.function<OpenFunction>(CHIMEWERK_M4A_FUNCTION_NAME); });
    return std::unique_ptr<Decoder>(open_ == nullptr ? nullptr : open_(&file));
}

}  // namespace chimewerk
