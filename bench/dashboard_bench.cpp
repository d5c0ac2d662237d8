// What it costs to keep the dashboard up to date while keys are pressed. Needs a display: run it in
// tools/session.
#include <benchmark/benchmark.h>

#include "support/dashboard_fixture.h"
#include "ui/controls/chimewerk_style.h"

namespace chimewerk {
namespace {

/// Until then nothing is painted.
void awaitWindow(DashboardFixture& bed) {
    while (!bed.window().isActiveWindow()) {
        QApplication::processEvents();
    }
}

/// A trigger of an event, from the call until the display is up to date; as many a second as can be.
void triggerAndPaint(benchmark::State& state, const char* eventId) {
    DashboardFixture bed;
    bed.library->setEnabled(true, eventId);
    awaitWindow(bed);
    for ([[maybe_unused]] auto _ : state) {
        bed.library->play(eventId);
        bed.library.queue.runPosted();
        QApplication::processEvents();
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
    DashboardFixture bed;
    bed.window().close();
    for ([[maybe_unused]] auto _ : state) {
        bed.library->play("slap");
        bed.library.queue.runPosted();
        QApplication::processEvents();
    }
}
BENCHMARK(hiddenWindow)->Unit(benchmark::kMicrosecond);

/// One row, painted each time.
void paintedRow(benchmark::State& state) {
    DashboardFixture bed;
    awaitWindow(bed);
    for ([[maybe_unused]] auto _ : state) {
        bed.table().update(bed.table().model()->index(1, 0));
        QApplication::processEvents();
    }
}
BENCHMARK(paintedRow)->Unit(benchmark::kMicrosecond)->Iterations(200);

/// For comparison: the whole window.
void wholeWindow(benchmark::State& state) {
    DashboardFixture bed;
    awaitWindow(bed);
    for ([[maybe_unused]] auto _ : state) {
        for (QWidget* const child : bed.window().findChildren<QWidget*>()) {
            child->update();
        }
        QApplication::processEvents();
    }
}
BENCHMARK(wholeWindow)->Unit(benchmark::kMicrosecond)->Iterations(20);

void thousandThemes(benchmark::State& state) {
    DashboardFixture bed;
    for (int i = 0; i < 1000; ++i) {
        bed.library->customThemes.push_back(
            {.id = std::to_string(i), .name = std::to_string(i), .sounds = {}});
    }
    for ([[maybe_unused]] auto _ : state) {
        bed.library->customThemes.back().name += "!";
        bed.library.notifications.post({.name = themeDidChange});
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
