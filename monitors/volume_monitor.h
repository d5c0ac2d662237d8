// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// What the volume monitor sees of the default audio output device, whichever that is at the moment
/// of a call. Main thread only.
class OutputVolumeSource {
public:
    /// A part of the device that has a volume of its own.
    enum class Element { main, firstChannel };

    virtual ~OutputVolumeSource() = default;

    /// The volume of `element` of the default output device, 0 to 1; none when there is no such
    /// device, or it has no volume there. Returns without waiting, and is cheap enough for eight
    /// calls a second.
    virtual std::optional<float> volume(Element element) = 0;
};

/// Reports the output volume going up or down. Compares with the reading before, so that only a
/// change within one poll counts. Main thread only.
class VolumeMonitor {
public:
    VolumeMonitor(MainQueue& queue, OutputVolumeSource& output);

    /// The volume rose by 0.03 or more within 0.25 s.
    std::function<void()> onUp;
    /// The volume fell by 0.03 or more within 0.25 s.
    std::function<void()> onDown;

    /// Takes the present volume as the reference and polls every 0.25 s. Call it once before
    /// `stop()`.
    void start();

    /// Ends the polling.
    void stop() { poller_.stop(); }

private:
    void poll();
    /// 0 to 1, or -1 when it cannot be read.
    float currentVolume();

    OutputVolumeSource& output_;
    /// The last valid reading; negative until there has been one.
    float lastVol_ = -1.0F;
    Poller poller_;
};

}  // namespace chimewerk
