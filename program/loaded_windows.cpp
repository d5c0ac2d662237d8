// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program/loaded_windows.h"

#include <cstdio>

#include "app/quiet_parts.h"

namespace chimewerk {

WindowFactory& LoadedWindows::windows() {
    if (windows_ == nullptr) {
        const auto make = module_.function<WindowsModuleFunction>(CHIMEWERK_WINDOWS_FUNCTION_NAME);
        if (make != nullptr) {
            windows_.reset(make(deps_, manual_));
        } else {
            std::fprintf(stderr, "chimewerk: a part of the program is missing: %s\n",
                         module_.error().c_str());
            windows_ = std::make_unique<NoWindows>();
        }
    }
    return *windows_;
}

}  // namespace chimewerk
