// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

/// The texts about the permission to use the microphone.
namespace chimewerk::microphone_texts {

inline constexpr std::string_view kQuestion = "Listen for knocks with the microphone?";
inline constexpr std::string_view kQuestionSign = "👊";
inline constexpr std::string_view kExplanation =
    "Single Knock plays when you knock on the computer. For that, Chimewerk looks at how loud the microphone is; it keeps no sound and sends nothing. You can change this at any time in the dashboard.";
inline constexpr std::string_view kAllow = "Allow";
inline constexpr std::string_view kDeny = "Don't Allow";

inline constexpr std::string_view kAllowed =
    "🔑  The microphone is allowed, and listened to while Chimewerk runs. It keeps no sound and sends nothing.";
inline constexpr std::string_view kDenyButton = "Stop Listening";
inline constexpr std::string_view kNotAllowed =
    "🔑  Knocks are not heard, because the microphone is not allowed. Chimewerk would keep no sound and send nothing.";
inline constexpr std::string_view kAllowButton = "Allow the Microphone";

}  // namespace chimewerk::microphone_texts
