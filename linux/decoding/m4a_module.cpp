// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/m4a_module.h"

#include <dlfcn.h>

#include <cstring>

namespace chimewerk {

bool M4aModule::recognises(std::span<const std::byte> bytes) {
    return bytes.size() >= 8 && std::memcmp(bytes.data() + 4, "ftyp", 4) == 0;
}

std::unique_ptr<Decoder> M4aModule::open(const VisibleFile& file) {
    std::call_once(loading_, [this] {
        if (void* const module = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL); module != nullptr) {
            open_ = reinterpret_cast<OpenFunction>(dlsym(module, "chimewerkOpenM4a"));
        }
    });
    return std::unique_ptr<Decoder>(open_ == nullptr ? nullptr : open_(&file));
}

}  // namespace chimewerk
