// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the cost of updating the dashboard while keys are pressed. Needs a display: run it
// in tools/session.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTableView>
#include <stdexcept>
#include <string>

#include "bench/bench_dashboard.h"
#include "sound/notifications.h"
#include "ui/dashboard/dashboard_window_controller.h"
#include "ui/toolkit/chimewerk_style.h"

namespace chimewerk {
namespace {

/// An open dashboard.
class OpenDashboard {
public:
    OpenDashboard() { controller_.showWindow(); }

    QWidget& window() const {
        for (QWidget* const each : QApplication::topLevelWidgets()) {
            if (each->windowTitle() == QStringLiteral("Chimewerk — Dashboard")) {
                return *each;
            }
        }
        throw std::out_of_range("no dashboard");
    }
    QTableView& table() const { return *window().findChild<QTableView*>(); }
    /// Waits until the window is active. Nothing is painted before.
    void awaitActivation() const {
        while (!window().isActiveWindow()) {
            QApplication::processEvents();
        }
    }
    SoundManager& sounds() { return parts_.library.sounds; }
    NotificationCenter& notifications() { return parts_.library.notifications; }
    /// Plays the event and updates the display.
    void trigger(const char* eventId) {
        sounds().play(eventId);
        parts_.queue.dispatch();
        QApplication::processEvents();
    }

private:
    BenchDashboard parts_;
    DashboardWindowController controller_{parts_.dependencies, parts_.monitors};
};

/// Triggers an event and updates the display, as often as possible.
void triggerAndPaint(benchmark::State& state, const char* eventId) {
    OpenDashboard dashboard;
    dashboard.sounds().setEnabled(true, eventId);
    dashboard.awaitActivation();
    for ([[maybe_unused]] auto _ : state) {
        dashboard.trigger(eventId);
    }
}

void shownRow(benchmark::State& state) {
    triggerAndPaint(state, "lid_open");
}
BENCHMARK(shownRow)->Unit(benchmark::kMicrosecond);

void selectedRow(benchmark::State& state) {
    triggerAndPaint(state, "slap");
}
BENCHMARK(selectedRow)->Unit(benchmark::kMicrosecond);

void rowOutOfSight(benchmark::State& state) {
    triggerAndPaint(state, "usb_connect");
}
BENCHMARK(rowOutOfSight)->Unit(benchmark::kMicrosecond);

void hiddenWindow(benchmark::State& state) {
    OpenDashboard dashboard;
    dashboard.window().close();
    for ([[maybe_unused]] auto _ : state) {
        dashboard.trigger("slap");
    }
}
BENCHMARK(hiddenWindow)->Unit(benchmark::kMicrosecond);

/// Repaints one row.
void paintedRow(benchmark::State& state) {
    OpenDashboard dashboard;
    dashboard.awaitActivation();
    for ([[maybe_unused]] auto _ : state) {
        dashboard.table().update(dashboard.table().model()->index(1, 0));
        QApplication::processEvents();
    }
}
BENCHMARK(paintedRow)->Unit(benchmark::kMicrosecond)->Iterations(200);

/// Repaints the whole window, for comparison.
void wholeWindow(benchmark::State& state) {
    OpenDashboard dashboard;
    dashboard.awaitActivation();
    for ([[maybe_unused]] auto _ : state) {
        for (QWidget* const child : dashboard.window().findChildren<QWidget*>()) {
            child->update();
        }
        QApplication::processEvents();
    }
}
BENCHMARK(wholeWindow)->Unit(benchmark::kMicrosecond)->Iterations(20);

void thousandThemes(benchmark::State& state) {
    OpenDashboard dashboard;
    for (int i = 0; i < 1000; ++i) {
        dashboard.sounds().customThemes.push_back(
            {.id = std::to_string(i), .name = std::to_string(i), .sounds = {}});
    }
    for ([[maybe_unused]] auto _ : state) {
        dashboard.sounds().customThemes.back().name += "!";
        dashboard.notifications().post({.name = themeDidChange});
        QApplication::processEvents();
    }
}
BENCHMARK(thousandThemes)->Unit(benchmark::kMicrosecond)->Iterations(20);

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    QApplication::setStyle(new chimewerk::ChimewerkStyle);
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
