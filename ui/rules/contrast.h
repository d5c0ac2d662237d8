// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// Posted when the desktop wants more or less contrast. No object.
inline constexpr std::string_view kContrastDidChange = "Chimewerk.contrast";

/// Returns whether a theme of this name, of GTK's or a variant of it, is one of high contrast.
bool isHighContrastTheme(std::string_view name);

/// Returns the theme's name in the settings of an X11 desktop, which are the bytes of the property
/// `_XSETTINGS_SETTINGS`; empty if it is not there or the bytes are damaged.
std::string themeInXSettings(std::string_view bytes);

}  // namespace chimewerk
