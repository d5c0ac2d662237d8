// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the cost of dragging a slider of the dashboard: time per move, frames, and writes of
// the settings.
#include <QApplication>
#include <QMouseEvent>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <vector>

#include "bench/bench_dashboard.h"
#include "tools/files/temporary_folder.h"
#include "ui/dashboard/detail_panel.h"
#include "ui/toolkit/chimewerk_style.h"

namespace chimewerk {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMoves = 300;
constexpr std::chrono::microseconds kFrame{1'000'000 / 60};

void runFor(std::chrono::microseconds span) {
    QEventLoop loop;
    QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(span), Qt::PreciseTimer, &loop,
                       &QEventLoop::quit);
    loop.exec();
}

void send(QWidget& widget, QEvent::Type type, double x) {
    const QPointF place(x, widget.height() / 2.0);
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, place, widget.mapToGlobal(place), button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Returns the processor time of this thread, which other programs on the machine do not affect.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Counts how often the file at a path has been replaced.
class Writes {
public:
    explicit Writes(std::string path) : path_(std::move(path)) {
        timer_.setInterval(std::chrono::milliseconds(2));
        QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
        timer_.start();
    }
    int count() const { return count_; }

private:
    void look() {
        std::error_code absent;
        const auto time = std::filesystem::last_write_time(path_, absent);
        if (!absent && time != last_) {
            last_ = time;
            ++count_;
        }
    }

    const std::string path_;
    QTimer timer_;
    std::filesystem::file_time_type last_{};
    int count_ = 0;
};

void dragAsFastAsScreensAreDrawn() {
    const TemporaryFolder home;
    BenchDashboard dashboard(home.path().string());
    EpollMainQueue& queue = dashboard.queue;
    const QSocketNotifier notifier(queue.descriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&queue] { queue.dispatch(); });
    DetailPanel panel(
        dashboard.dependencies, dashboard.monitors, [] { return std::size_t{0}; }, [] {});
    panel.setFixedSize(459, 520);
    panel.refreshDetail();
    panel.QWidget::show();
    runFor(std::chrono::milliseconds(500));

    const Writes writes(home / "chimewerk/settings.json");
    QSlider& slider = *panel.findChild<QSlider*>();
    std::vector<double> costs;
    int late = 0;
    send(slider, QEvent::MouseButtonPress, slider.width() - 11.0);
    auto due = Clock::now();
    for (int i = 0; i < kMoves; ++i) {
        const double begun = threadMilliseconds();
        send(slider, QEvent::MouseMove, 11.0 + (i * 7 % (slider.width() - 22)));
        QApplication::processEvents();
        costs.push_back(threadMilliseconds() - begun);
        due += kFrame;
        late += Clock::now() > due ? 1 : 0;
        runFor(std::chrono::duration_cast<std::chrono::microseconds>(
            std::max(due - Clock::now(), Clock::duration{})));
    }
    send(slider, QEvent::MouseButtonRelease, 50.0);
    const int during = writes.count();
    runFor(std::chrono::milliseconds(600));

    std::sort(costs.begin(), costs.end());
    std::printf(
        "%d moves, 60 a second: %.2f ms of the processor each, stored and painted (90th percentile "
        "%.2f ms), %d frames late\n",
        kMoves, costs[costs.size() / 2], costs[costs.size() * 9 / 10], late);
    std::printf("settings written %d times during the drag of %.1f s, %d times after it\n", during,
                kMoves / 60.0, writes.count() - during);
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    QApplication::setStyle(new chimewerk::ChimewerkStyle);
    const QApplication application(argc, argv);
    chimewerk::dragAsFastAsScreensAreDrawn();
}
