// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>
#include <vector>

#include "monitors/microphone.h"
#include "monitors/screenshot_monitor.h"
#include "platform/source_report.h"

namespace chimewerk {

/// What can report on the events' sources. All must outlive the object.
struct SourceReporters {
    ReportsItself& lidSensor;
    ReportsItself& display;
    ReportsItself& keys;
    ReportsItself& output;
    ReportsItself& launches;
    ReportsItself& trash;
    ReportsItself& reachability;
    ReportsItself& usbDevices;
    ReportsItself& recorder;
    ReportsItself& sleepSource;
    ReportsItself& powerSources;
    /// Says whether the user lets the program record.
    Microphone& microphone;
    std::vector<ScreenshotFolder> screenshotFolders;

    /// Returns the report of the source of this event, or of the sound output for "sound_output".
    SourceReport of(std::string_view eventId) const;

private:
    SourceReport ofMicrophone() const;
    SourceReport ofScreenshots() const;
};

}  // namespace chimewerk
