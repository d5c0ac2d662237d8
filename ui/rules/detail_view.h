// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "sound/sound_event.h"
#include "sound/sound_theme.h"

namespace chimewerk {

/// The facts that determine how the panel shows an event.
struct DetailFacts {
    /// All events; the battery's threshold is read from here.
    const std::vector<SoundEvent>& events;
    SoundTheme currentTheme = SoundTheme::system;
    bool isCustomThemeActive = false;
    const FileSystem& files;
    /// The absolute path of the folder with the program's own sounds; empty if there is no
    /// such folder.
    std::string_view resourceFolder;
    /// Whether the lid-angle event can work on this machine.
    bool isAppleSilicon = false;
    /// Whether there is a lid-angle sensor.
    bool sensorFound = false;
    /// Whether key presses can be received.
    bool trusted = false;
    /// Whether key presses are being received.
    bool tapActive = false;
    /// Whether the user allows the microphone.
    bool mayUseMicrophone = false;
    /// Whether the event cannot be heard before the program starts again.
    bool waitsForRestart = false;
    /// Which hardware this machine lacks for the event, as a sentence; empty if it lacks none.
    std::string missingHardware = {};
};

/// The settings that only some events have.
enum class DetailBox { none, threshold, permission, microphone, intelLock, batteryThreshold };

/// Everything that the panel shows about an event.
struct DetailView {
    std::string emoji;
    std::string title;
    std::string soundText;
    /// Whether the event has its own file, which can be removed.
    bool hasOwnSound = false;
    /// 0.0 to 1.0.
    float volume = 0.0F;
    std::string volumeText;
    std::string triggerText;
    /// Says that the event is on and yet silent, or cannot work here; empty if neither holds.
    std::string silenceText;
    std::string counterText;
    bool switchIsOn = false;
    bool switchIsEnabled = true;
    /// The opacity of the panel except for its switch, 0 to 1.
    double alpha = 1.0;
    DetailBox box = DetailBox::none;
    /// Whether the permission box offers to open the settings.
    bool canGrant = false;
    /// For the box with the microphone's permission.
    bool mayUseMicrophone = false;
    bool thresholdIsEnabled = false;
    /// In degrees or percent, for the two boxes with a threshold. The text includes the unit.
    float threshold = 0.0F;
    std::string thresholdText;
};

DetailView detailView(const SoundEvent& event, const DetailFacts& facts);

/// Returns a description of when the event triggers; empty for an unknown event.
std::string triggerDesc(const SoundEvent& event, const DetailFacts& facts);

}  // namespace chimewerk
