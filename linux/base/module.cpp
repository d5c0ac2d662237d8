// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/module.h"

#include <dlfcn.h>
#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace chimewerk {

Module::Module(std::string path, Symbols symbols)
    : path_(std::move(path)), symbols_(symbols), file_(open(path_.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (!file_) {
        error_ = path_ + ": " + std::strerror(errno);
    }
}

void* Module::find(const char* name) {
    if (!file_) {
        return nullptr;
    }
    if (module_ == nullptr) {
        const std::string opened = "/proc/self/fd/" + std::to_string(file_.get());
        const int scope = symbols_ == Symbols::shared ? RTLD_GLOBAL : RTLD_LOCAL;
        module_ = dlopen(opened.c_str(), RTLD_NOW | scope);
    }
    void* const found = module_ == nullptr ? nullptr : dlsym(module_, name);
    if (found == nullptr) {
        error_ = path_ + ": " + dlerror();
    }
    return found;
}

}  // namespace chimewerk
