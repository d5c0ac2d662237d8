// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/source_reports.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

#include "sound/sound_event.h"

namespace chimewerk {

SourceReport SourceReporters::of(std::string_view eventId) const {
    if (eventId == event_ids::kSlap) {
        return ofMicrophone();
    }
    if (eventId == event_ids::kScreenshot) {
        return ofScreenshots();
    }
    struct Row {
        std::string_view eventId;
        ReportsItself& source;
    };
    const Row rows[] = {
        {event_ids::kLidOpen, sleepSource},
        {event_ids::kLidClose, sleepSource},
        {event_ids::kLidAngle, lidSensor},
        {event_ids::kChargerConnect, powerSources},
        {event_ids::kChargerDisconnect, powerSources},
        {event_ids::kBatteryLow, powerSources},
        {event_ids::kBrightnessUp, display},
        {event_ids::kBrightnessDown, display},
        {event_ids::kKeyPress, keys},
        {event_ids::kAppLaunch, launches},
        {event_ids::kTrashEmpty, trash},
        {event_ids::kTrashAdd, trash},
        {event_ids::kNetworkUp, reachability},
        {event_ids::kNetworkDown, reachability},
        {event_ids::kUsbConnect, usbDevices},
    };
    const Row* const row = std::ranges::find(rows, eventId, &Row::eventId);
    // The volume is that of the output.
    return row == std::end(rows) ? output.report() : row->source.report();
}

SourceReport SourceReporters::ofMicrophone() const {
    switch (microphone.authorization()) {
        case Microphone::Authorization::authorized:
            return recorder.report();
        case Microphone::Authorization::notDetermined:
            return {.mechanism = "not allowed yet",
                    .missing = "You have not said yet whether Chimewerk may listen for knocks.",
                    .advice = "Run: chimewerk --microphone allow"};
        default:
            return {.mechanism = "not allowed",
                    .missing = "You do not let Chimewerk listen for knocks.",
                    .advice = "Run: chimewerk --microphone allow"};
    }
}

SourceReport SourceReporters::ofScreenshots() const {
    std::set<std::string> paths;
    SourceReport report;
    for (const ScreenshotFolder& folder : screenshotFolders) {
        if (paths.insert(folder.path).second) {
            report.mechanism += (report.mechanism.empty() ? "" : ", ") + folder.path;
        }
    }
    if (paths.empty()) {
        report = {.mechanism = "no folder",
                  .missing = "There is no folder for screenshots.",
                  .advice = "Set HOME to your home folder."};
    }
    return report;
}

}  // namespace chimewerk
