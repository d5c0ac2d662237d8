// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/volume_monitor.h"

namespace chimewerk {

namespace {

constexpr Seconds kPollInterval{0.25};
constexpr float kMinDelta = 0.03F;
constexpr float kNone = -1.0F;

}  // namespace

VolumeMonitor::VolumeMonitor(MainQueue& queue, OutputVolumeSource& output)
    : output_(output), poller_(queue) {}

void VolumeMonitor::start() {
    lastVol_ = currentVolume();
    poller_.start(kPollInterval, output_, [this] { poll(); });
}

void VolumeMonitor::poll() {
    const float volume = currentVolume();
    if (volume < 0) {
        return;
    }
    const float before = lastVol_;
    lastVol_ = volume;
    if (before < 0) {
        return;
    }
    if (volume - before >= kMinDelta) {
        if (onUp) {
            onUp();
        }
    } else if (before - volume >= kMinDelta && onDown) {
        onDown();
    }
}

float VolumeMonitor::currentVolume() {
    std::optional<float> volume = output_.volume(OutputVolumeSource::Element::main);
    if (!volume) {
        volume = output_.volume(OutputVolumeSource::Element::firstChannel);
    }
    return volume.value_or(kNone);
}

}  // namespace chimewerk
