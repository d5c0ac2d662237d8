// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include "platform/main_queue.h"
#include "platform/polled_source.h"
#include "platform/poller.h"

namespace chimewerk {

/// Reads the volume of the default audio output device, whichever that is at the time of the call.
/// Main thread only.
class OutputVolumeSource : public PolledSource {
public:
    /// A part of the device that has its own volume.
    enum class Element { main, firstChannel };

    /// Returns the volume of `element` of the default output device, 0 to 1; none if there is
    /// no such device or it has no volume there. Does not block; cheap enough for eight calls
    /// a second.
    virtual std::optional<float> volume(Element element) = 0;
};

/// Reports that the output volume went up or down. Compares with the previous reading, so only a
/// change within one poll counts. Main thread only.
class VolumeMonitor {
public:
    VolumeMonitor(MainQueue& queue, OutputVolumeSource& output);

    /// Called when the volume has risen by 0.03 or more within one poll.
    std::function<void()> onUp;
    /// Called when the volume has fallen by 0.03 or more within one poll.
    std::function<void()> onDown;

    /// Takes the current volume as the reference and polls every 0.25 s, while the source may have
    /// changed. Call once before `stop()`.
    void start();

    /// Stops polling.
    void stop() { poller_.stop(); }

private:
    void poll();
    /// Returns the volume, 0 to 1, or -1 if it cannot be read.
    float currentVolume();

    OutputVolumeSource& output_;
    /// The last valid reading; negative until the first.
    float lastVol_ = -1.0F;
    Poller poller_;
};

}  // namespace chimewerk
