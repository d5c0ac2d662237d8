// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/m4a_module.h"

#include <dlfcn.h>

namespace chimewerk {

std::unique_ptr<Decoder> M4aModule::open(ByteStream& file) {
    std::call_once(loading_, [this] {
        if (void* const module = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL); module != nullptr) {
            open_ = reinterpret_cast<OpenFunction>(dlsym(module, CHIMEWERK_M4A_FUNCTION_NAME));
        }
    });
    return std::unique_ptr<Decoder>(open_ == nullptr ? nullptr : open_(&file));
}

}  // namespace chimewerk
