// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/detail_panel.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <utility>

#include "ui/rules/detail_texts.h"
#include "ui/rules/microphone_texts.h"
#include "ui/rules/value_texts.h"

namespace chimewerk {

namespace {

constexpr int kMargin = 28;
constexpr int kBottomMargin = 8;
constexpr int kGaugeHeight = 130;
/// The dial is lower than kGaugeHeight if long texts need the room, but not lower than this.
constexpr int kLowestGauge = 84;

}  // namespace

/// Dims the panel as if it were less opaque, except for the switch, which ends the dimming.
class DetailPanel::Veil final : public QWidget {
public:
    explicit Veil(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }
    /// `alpha` is the apparent opacity of the panel, 0 to 1; `clear` is the area that is
    /// not dimmed.
    void set(double alpha, const QRect& clear) {
        alpha_ = alpha;
        clear_ = clear;
        setVisible(alpha < 1.0);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setClipRegion(QRegion(rect()) - clear_);
        painter.setOpacity(1.0 - alpha_);
        painter.fillRect(rect(), palette().color(QPalette::Window));
    }

private:
    double alpha_ = 1.0;
    QRect clear_;
};

DetailPanel::DetailPanel(const DashboardDependencies& dependencies,
                         const DashboardMonitors& monitors,
                         std::function<std::size_t()> selectedIndex,
                         std::function<void()> onSettingsChanged)
    : deps_(dependencies),
      monitors_(monitors),
      sm_(dependencies.sounds),
      selectedIndex_(std::move(selectedIndex)),
      onSettingsChanged_(std::move(onSettingsChanged)),
      loader_(*this, dependencies.soundFolder),
      header_(new DetailHeader(this, [this] { detailToggle(); })),
      soundBox_(new SoundBox(this, {.onLoad = [this] { loadSound(); },
                                    .onTest = [this] { previewSound(); },
                                    .onRemove = [this] { removeSound(); }})),
      volumeSlider_(new LabeledSlider(this,
                                      {.heading = detail_texts::kVolumeSection,
                                       .name = "Volume",
                                       .range = {.minimum = 0, .maximum = 100, .unit = 0.01},
                                       .text = volumeText,
                                       .width = 220,
                                       .gap = 10},
                                      sm_, [this](float volume) { volumeChanged(volume); })),
      triggerBox_(new TriggerBox(this)),
      thresholdBox_(new AngleBox(this, sm_, [this](float degrees) { thresholdChanged(degrees); })),
      permissionBox_(new PermissionBox(this, [this] { deps_.keyPermissionPage.show(); })),
      microphoneBox_(new PermissionBox(this, [this] { changeMicrophone(); })),
      intelLockBox_(new LockBox(this)),
      batteryThreshBox_(
          new LabeledSlider(this,
                            {.heading = detail_texts::kBatterySection,
                             .name = "Alert Threshold",
                             .range = {.minimum = 0, .maximum = 100, .unit = 1.0},
                             .text = percentText,
                             .width = 200,
                             .gap = 8},
                            sm_, [this](float percent) { batteryThreshChanged(percent); })),
      veil_(new Veil(this)) {
    alignTexts();
    watch_.setInterval(std::chrono::milliseconds(1500));
    watch_.setTimerType(Qt::CoarseTimer);
    connect(&watch_, &QTimer::timeout, this, [this] {
        if (watched() != shown_) {
            refreshDetail();
        }
    });
}

const SoundEvent* DetailPanel::selectedEvent() const {
    const std::size_t index = selectedIndex_();
    return index < sm_.events.size() ? &sm_.events[index] : nullptr;
}

DetailPanel::Watched DetailPanel::watched() const {
    return {.trusted = deps_.keys.trusted(),
            .tapActive = monitors_.keyboard.active,
            .sensorFound = monitors_.lid.sensorFound,
            .mayUseMicrophone = monitors_.mayUseMicrophone()};
}

void DetailPanel::refreshDetail() {
    const SoundEvent* const event = selectedEvent();
    if (event == nullptr) {
        return;
    }
    shown_ = watched();
    display(detailView(*event, {.events = sm_.events,
                                .currentTheme = sm_.currentTheme,
                                .isCustomThemeActive = sm_.isCustomThemeActive(),
                                .files = deps_.files,
                                .resourceFolder = deps_.resourceFolder,
                                .isAppleSilicon = deps_.isAppleSilicon,
                                .sensorFound = shown_.sensorFound,
                                .trusted = shown_.trusted,
                                .tapActive = shown_.tapActive,
                                .mayUseMicrophone = shown_.mayUseMicrophone,
                                .waitsForRestart = monitors_.waitsForRestart(event->id),
                                .missingHardware = missingHardware(event->id)}));
}

std::string DetailPanel::missingHardware(const std::string& eventId) const {
    const SourceReport report = deps_.report ? deps_.report(eventId) : SourceReport();
    return report.lacksHardware ? report.missing : "";
}

void DetailPanel::display(const DetailView& view) {
    header_->display(view);
    soundBox_->display(view);
    volumeSlider_->display(view.volume, view.volumeText);
    triggerBox_->display(view);
    displayBox(view);
    arrange();
    veil_->set(view.alpha, header_->switchArea());
}

void DetailPanel::displayBox(const DetailView& view) {
    box_ = view.box;
    if (box_ == DetailBox::threshold) {
        thresholdBox_->display(view);
    } else if (box_ == DetailBox::permission) {
        permissionBox_->display(detail_texts::kPermission,
                                view.canGrant ? detail_texts::kGrantButton : "");
    } else if (box_ == DetailBox::microphone) {
        using namespace microphone_texts;
        microphoneBox_->display(view.mayUseMicrophone ? kAllowed : kNotAllowed,
                                view.mayUseMicrophone ? kDenyButton : kAllowButton);
    } else if (box_ == DetailBox::batteryThreshold) {
        batteryThreshBox_->display(view.threshold, view.thresholdText);
    }
    for (PanelBox* const box : std::initializer_list<PanelBox*>{
             thresholdBox_, permissionBox_, microphoneBox_, intelLockBox_, batteryThreshBox_}) {
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): only shownBox() may be null.
        box->setVisible(box == shownBox());
    }
    watch();
}

PanelBox* DetailPanel::shownBox() const {
    switch (box_) {
        case DetailBox::threshold:
            return thresholdBox_;
        case DetailBox::permission:
            return permissionBox_;
        case DetailBox::microphone:
            return microphoneBox_;
        case DetailBox::intelLock:
            return intelLockBox_;
        case DetailBox::batteryThreshold:
            return batteryThreshBox_;
        case DetailBox::none:
            break;
    }
    return nullptr;
}

void DetailPanel::detailToggle() {
    const SoundEvent* const event = selectedEvent();
    if (event == nullptr) {
        return;
    }
    sm_.setEnabled(header_->isOn(), event->id);
    onSettingsChanged_();
    if (event->id == event_ids::kKeyPress) {
        if (event->isEnabled) {
            monitors_.keyboard.start();
        } else {
            monitors_.keyboard.stop();
        }
    }
    refreshDetail();
}

void DetailPanel::changeMicrophone() {
    monitors_.allowMicrophone(!monitors_.mayUseMicrophone());
    refreshDetail();
}

void DetailPanel::loadSound() {
    const SoundEvent* const event = selectedEvent();
    if (event == nullptr) {
        return;
    }
    loader_.chooseFile([this, id = event->id](const std::string& path) {
        sm_.setPath(path, id);
        refreshDetail();
        onSettingsChanged_();
    });
}

void DetailPanel::previewSound() {
    if (const SoundEvent* const event = selectedEvent()) {
        sm_.playEvent(*event);
    }
}

void DetailPanel::removeSound() {
    if (const SoundEvent* const event = selectedEvent()) {
        sm_.setPath(std::nullopt, event->id);
        refreshDetail();
        onSettingsChanged_();
    }
}

void DetailPanel::volumeChanged(float volume) {
    if (const SoundEvent* const event = selectedEvent()) {
        sm_.setVolume(volume, event->id);
    }
}

void DetailPanel::thresholdChanged(float degrees) {
    sm_.setThreshold(degrees, event_ids::kLidAngle);
    monitors_.lid.updateThreshold(degrees);
    thresholdBox_->setThreshold(degrees);
}

void DetailPanel::batteryThreshChanged(float percent) {
    sm_.setThreshold(percent, event_ids::kBatteryLow);
    monitors_.resetBatteryLowFlag();
}

bool DetailPanel::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::WindowActivate:
            // A permission may have been given elsewhere, or a file removed.
            refreshDetail();
            break;
        case QEvent::LayoutDirectionChange:
            alignTexts();
            arrange();
            break;
        case QEvent::FontChange:
        case QEvent::StyleChange:
            arrange();
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

void DetailPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    veil_->setGeometry(rect());
    arrange();
}

void DetailPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    watch();
}

void DetailPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    watch_.stop();
}

/// Permissions, tap and sensor change without a notification, so they are polled while they
/// are shown.
void DetailPanel::watch() {
    const bool wanted =
        isVisible() && (box_ == DetailBox::permission || box_ == DetailBox::microphone ||
                        box_ == DetailBox::threshold);
    if (!wanted) {
        watch_.stop();
    } else if (!watch_.isActive()) {
        watch_.start();
    }
}

/// Aligns texts with the controls, whatever the direction of their language.
void DetailPanel::alignTexts() {
    for (QLabel* const label : findChildren<QLabel*>()) {
        if ((label->alignment() & Qt::AlignHCenter) == 0) {
            label->setAlignment(Qt::AlignAbsolute |
                                (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) |
                                (label->wordWrap() ? Qt::AlignTop : Qt::AlignVCenter));
        }
    }
}

void DetailPanel::arrange() {
    const int excess = arrange(kGaugeHeight) - (height() - kBottomMargin);
    if (excess > 0 && box_ == DetailBox::threshold) {
        arrange(std::max(kLowestGauge, kGaugeHeight - excess));
    }
}

/// Places all visible boxes and returns the end of the last one.
int DetailPanel::arrange(int gaugeHeight) {
    const int inner = width() - 2 * kMargin;
    int bottom = header_->arrange({kMargin, kMargin}, inner);
    bottom = soundBox_->arrange({kMargin, bottom + 14}, inner);
    bottom = volumeSlider_->arrange({kMargin, bottom + 20}, inner);
    bottom = triggerBox_->arrange({kMargin, bottom + 20}, inner);
    thresholdBox_->setGaugeHeight(gaugeHeight);
    PanelBox* const box = shownBox();
    return box == nullptr ? bottom : box->arrange({kMargin, bottom + 18}, inner);
}

}  // namespace chimewerk
