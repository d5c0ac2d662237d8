// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/microphone_permission.h"

namespace chimewerk {

Microphone::Authorization MicrophonePermission::authorization() {
    const std::optional<DefaultsValue> stored = defaults_.object(kAllowedKey);
    const bool* const allowed = stored ? std::get_if<bool>(&stored->value) : nullptr;
    if (allowed == nullptr) {
        return Authorization::notDetermined;
    }
    return *allowed ? microphone_.authorization() : Authorization::denied;
}

void MicrophonePermission::answer(bool allowed) {
    defaults_.setObject(kAllowedKey, DefaultsValue{allowed});
    if (const auto answered = std::exchange(answered_, nullptr)) {
        answered(allowed);
    }
}

}  // namespace chimewerk
