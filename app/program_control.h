// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_delegate.h"
#include "app/options/names.h"
#include "platform/clock.h"
#include "platform/notification_center.h"
#include "platform/remote_control.h"
#include "platform/source_report.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// Carries out what other programs ask of this one, as the dashboard would. Main thread only.
class ProgramControl final : public RemoteControl {
public:
    /// The dependencies; all must outlive the object.
    struct Dependencies {
        SoundManager& sounds;
        AppDelegate& delegate;
        NotificationCenter& notifications;
        const Clock& clock;
        /// Returns the report of the event's source, or of the sound output for "sound_output".
        std::function<SourceReport(std::string_view eventId)> report;
        /// Whether the lid-angle event can work on this machine.
        bool supportsLidAngle = false;
    };

    explicit ProgramControl(const Dependencies& dependencies);

    /// Called when the theme or the mute has changed, whoever changed it. May be empty.
    std::function<void()> onThemeChanged;
    std::function<void()> onMuteChanged;

    Refusal play(const std::string& event) override;
    Refusal setEnabled(const std::string& event, bool enabled) override;
    /// `theme` is the name of a built-in theme, or the name or id of one of the user's.
    Refusal setTheme(const std::string& theme) override;
    Refusal setMuted(bool muted) override;
    Refusal toggleMuted(bool& isMutedNow) override;
    Refusal readState(RemoteState& state) override;
    Refusal check(std::vector<RemoteCheck>& checks) override;

private:
    const SoundEvent* findEvent(const std::string& typed, Refusal& refusal) const;
    std::vector<Name> themeNames() const;
    std::string selectedTheme() const;
    std::string soundOf(const SoundEvent& event) const;
    RemoteCheck checkOutput() const;
    RemoteCheck checkEvent(const SoundEvent& event) const;

    const Dependencies deps_;
    SoundManager& sm_;
    /// When each event was last counted.
    std::map<std::string, WallTime, std::less<>> lastHeard_;
    NotificationCenter::Subscription themes_;
    NotificationCenter::Subscription mutes_;
    NotificationCenter::Subscription counts_;
};

}  // namespace chimewerk
