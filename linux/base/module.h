// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// A part of the program that lies in a shared object of its own and is loaded when it is needed,
/// once, and never unloaded. The file is opened at once: a program that runs on while its package is
/// upgraded loads the part that belongs to it.
class Module {
public:
    enum class Symbols {
        /// Only `function()` finds what is in the module.
        own,
        /// Modules that are loaded later use it, too.
        shared,
    };

    explicit Module(std::string path, Symbols symbols = Symbols::own);

    /// Loads the module and returns its function of this name; null if the file is missing or is none
    /// of ours. May be called again. Any thread, but only one at a time.
    template <typename Function>
    Function function(const char* name) {
        return reinterpret_cast<Function>(find(name));
    }

    /// Says why the last call has returned null.
    const std::string& error() const { return error_; }

private:
    void* find(const char* name);

    const std::string path_;
    const Symbols symbols_;
    const FileDescriptor file_;
    void* module_ = nullptr;
    std::string error_;
};

}  // namespace chimewerk
