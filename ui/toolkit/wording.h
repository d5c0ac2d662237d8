// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <string_view>

#include "ui/texts/platform_wording.h"

namespace chimewerk {

/// Returns a text of the rules as the windows show it. Every text goes through here that is not the
/// user's own, such as the name of a file.
inline QString worded(std::string_view given) {
    return QString::fromStdString(platformWording(given));
}

}  // namespace chimewerk
