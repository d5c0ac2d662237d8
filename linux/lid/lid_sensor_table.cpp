// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/lid_sensor_table.h"

#include <span>
#include <utility>

#include "linux/lid/hidraw_lid_sensor_source.h"
#include "linux/lid/iio_lid_sensor_source.h"
#include "linux/lid/linux_hardware_query.h"
#include "linux/lid/null_lid_sensor_source.h"

namespace chimewerk {

LidSensorTable::Rows LidSensorTable::rows(EpollMainQueue& queue) {
    Rows rows;
    rows.push_back(std::make_unique<HidrawLidSensorSource>(queue));
    rows.push_back(std::make_unique<IioLidSensorSource>(queue));
    rows.push_back(std::make_unique<NullLidSensorSource>());
    return rows;
}

LidSensorTable::LidSensorTable(EpollMainQueue& queue, Rows rows)
    : queue_(queue), rows_(std::move(rows)), current_(rows_.back().get()) {}

bool LidSensorTable::open(AngleHandler onAngle, FoundHandler onFound) {
    onAngle_ = std::move(onAngle);
    onFound_ = std::move(onFound);
    // Watch before searching, so that a device that appears in between is not missed.
    devices_ = UdevMonitor::open(queue_,
                                 {{.subsystem = "hidraw", .deviceType = nullptr},
                                  {.subsystem = "iio", .deviceType = nullptr}},
                                 [this](std::span<const UdevEvent> /*events*/) { chooseAgain(); });
    found_ = choose();
    return found_;
}

void LidSensorTable::close() {
    devices_ = nullptr;
    current_->close();
    current_ = rows_.back().get();
    found_ = false;
    onAngle_ = nullptr;
    onFound_ = nullptr;
}

SourceReport LidSensorTable::report() {
    if (found_) {
        return {.mechanism = std::string(current_->name())};
    }
    if (LinuxHardwareQuery::hasHingeSensor()) {
        return {.mechanism = "hinge sensor, not readable",
                .missing = "There is a sensor in the hinge, but it cannot be opened.",
                .advice = "Install the package, which brings the udev rule; then log in again."};
    }
    return {.mechanism = "no hinge sensor",
            .missing = "There is no sensor in the hinge that Chimewerk knows.",
            .lacksHardware = true};
}

bool LidSensorTable::choose() {
    LidSensorSource* const before = current_;
    current_ = rows_.back().get();
    bool found = false;
    for (const auto& row : rows_) {
        if (row->open(onAngle_, rowHandler())) {
            current_ = row.get();
            found = true;
            break;
        }
    }
    if (before != current_) {
        before->close();
    }
    return found;
}

void LidSensorTable::chooseAgain() {
    if (!onFound_) {
        return;
    }
    const bool before = std::exchange(found_, choose());
    if (found_ != before) {
        const FoundHandler onFound = onFound_;
        onFound(found_);
    }
}

/// Returns a handler that searches the table later, because a row may call it in the middle of its
/// own work.
LidSensorSource::FoundHandler LidSensorTable::rowHandler() {
    return [this](bool /*found*/) { queue_.post(lifeline_.guard([this] { chooseAgain(); })); };
}

}  // namespace chimewerk
