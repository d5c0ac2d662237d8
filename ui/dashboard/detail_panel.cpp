#include "ui/dashboard/detail_panel.h"

#include <QEvent>
#include <QPainter>
#include <chrono>
#include <utility>

#include "ui/controls/color_scheme.h"
#include "ui/rules/counter_text.h"
#include "ui/rules/detail_texts.h"

namespace chimewerk {

namespace {

QString toText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QLabel* makeText(std::string_view text, int size, LabelColor color) {
    auto* const label = makeLabel(toText(text), size, QFont::Normal, color);
    label->setWordWrap(true);
    return label;
}

QLabel* makeValueLabel(const std::string& text) {
    auto* const label = makeLabel(toText(text), 12, QFont::Normal, LabelColor::secondary);
    label->setFont(monospacedDigitSystemFont(12));
    return label;
}

}  // namespace

/// Dims what it lies over, as if that were less opaque.
class DetailPanel::Veil final : public QWidget {
public:
    explicit Veil(QWidget* parent) : QWidget(parent) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }
    /// How opaque what lies beneath is to look.
    void setAlpha(double alpha) {
        alpha_ = alpha;
        setVisible(alpha < 1.0);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setOpacity(1.0 - alpha_);
        painter.fillRect(rect(), palette().color(QPalette::Window));
    }

private:
    double alpha_ = 1.0;
};

DetailPanel::DetailPanel(const DashboardDependencies& around,
                         std::function<std::size_t()> selectedIndex,
                         std::function<void()> onSettingsChanged)
    : deps_(around),
      sm_(around.sounds),
      selectedIndex_(std::move(selectedIndex)),
      onSettingsChanged_(std::move(onSettingsChanged)),
      loader_(*this, around.soundFolder) {
    buildDetailPanel();
    watch_.setInterval(std::chrono::milliseconds(1500));
    watch_.setTimerType(Qt::CoarseTimer);
    connect(&watch_, &QTimer::timeout, this, [this] {
        if (watched() != shown_) {
            refreshDetail();
        }
    });
}

/// In the order in which the keyboard goes through it.
ValueSlider* DetailPanel::makeSlider(const ValueSlider::Range& range, ValueSlider::Text text,
                                     const char* name) {
    auto* const slider = new ValueSlider(range, std::move(text));
    slider->setAccessibleName(QString::fromLatin1(name));
    // A drag is written once, at its end.
    connect(slider, &QSlider::sliderPressed, this,
            [this] { heldWrites_ = sm_.holdWrites(); });
    connect(slider, &QSlider::sliderReleased, this, [this] { heldWrites_ = nullptr; });
    return slider;
}

void DetailPanel::buildDetailPanel() {
    eventEmoji_ = makeLabel({}, 40);
    eventTitle_ = makeLabel({}, 20, QFont::Bold);
    enableSwitch_ = new SwitchControl;
    connect(enableSwitch_, &SwitchControl::toggled, this, &DetailPanel::detailToggle);
    counterLabel_ =
        makeLabel(toText("Triggered: 0 times"), 11, QFont::Normal, LabelColor::tertiary);
    counterLabel_->setFont(monospacedDigitSystemFont(11));

    soundSection_ = makeSectionLabel(toText(detail_texts::kSoundSection));
    soundLabel_ = makeLabel(toText("—"), 12, QFont::Normal, LabelColor::secondary);
    loadBtn_ = makeButton(toText(detail_texts::kLoadButton));
    connect(loadBtn_, &QPushButton::clicked, this, &DetailPanel::loadSound);
    testBtn_ = makeButton(toText(detail_texts::kTestButton));
    testBtn_->setAccessibleName(QStringLiteral("Test Sound"));
    connect(testBtn_, &QPushButton::clicked, this, &DetailPanel::previewSound);
    removeSoundBtn_ = makeButton(toText(detail_texts::kRemoveButton));
    removeSoundBtn_->setAccessibleName(QStringLiteral("Remove"));
    connect(removeSoundBtn_, &QPushButton::clicked, this, &DetailPanel::removeSound);

    volumeSection_ = makeSectionLabel(toText(detail_texts::kVolumeSection));
    volumeSlider_ = makeSlider({.minimum = 0, .maximum = 100, .unit = 0.01}, volumeText, "Volume");
    volumeSlider_->setNumber(1.0F);
    connect(volumeSlider_, &QSlider::valueChanged, this, &DetailPanel::volumeChanged);
    volumeLabel_ = makeValueLabel("100%");
    triggerSection_ = makeSectionLabel(toText(detail_texts::kTriggerSection));
    triggerInfo_ = makeText({}, 12, LabelColor::secondary);

    for (QWidget* const part : std::initializer_list<QWidget*>{
             eventEmoji_, eventTitle_, enableSwitch_, counterLabel_, soundSection_, soundLabel_,
             loadBtn_, testBtn_, removeSoundBtn_, volumeSection_, volumeSlider_, volumeLabel_,
             triggerSection_, triggerInfo_}) {
        part->setParent(this);
    }
    buildThresholdBox();
    buildPermissionBox();
    buildIntelLockBox();
    buildBatteryThreshBox();
    veil_ = new Veil(this);
    // It stays as clear as it is: it is what ends the dimming.
    enableSwitch_->raise();
    alignTexts();
}

void DetailPanel::buildThresholdBox() {
    thresholdBox_ = new QWidget(this);
    angleGauge_ = new AngleGaugeView(thresholdBox_);
    angleSection_ = makeSectionLabel(toText(detail_texts::kAngleSection));
    thresholdSlider_ =
        makeSlider({.minimum = 10, .maximum = 170, .unit = 1.0}, degreesText, "Trigger Angle");
    thresholdSlider_->setNumber(90.0F);
    connect(thresholdSlider_, &QSlider::valueChanged, this, &DetailPanel::thresholdChanged);
    thresholdValueLabel_ = makeValueLabel("90°");
    for (QWidget* const part :
         std::initializer_list<QWidget*>{angleSection_, thresholdSlider_, thresholdValueLabel_}) {
        part->setParent(thresholdBox_);
    }
}

void DetailPanel::buildPermissionBox() {
    permissionBox_ = new QWidget(this);
    permissionText_ = makeText(detail_texts::kPermission, 11, LabelColor::secondary);
    permissionText_->setParent(permissionBox_);
    grantBtn_ = makeButton(toText(detail_texts::kGrantButton));
    grantBtn_->setParent(permissionBox_);
    connect(grantBtn_, &QPushButton::clicked, this, &DetailPanel::grantAccess);
}

void DetailPanel::buildIntelLockBox() {
    intelLockBox_ = new QWidget(this);
    lockEmoji_ = makeLabel(toText(detail_texts::kLock), 36);
    lockTitle_ =
        makeLabel(toText(detail_texts::kLockTitle), 15, QFont::DemiBold, LabelColor::secondary);
    lockText_ = makeText(detail_texts::kLockText, 11, LabelColor::tertiary);
    for (QWidget* const part : std::initializer_list<QWidget*>{lockEmoji_, lockTitle_, lockText_}) {
        part->setParent(intelLockBox_);
    }
}

void DetailPanel::buildBatteryThreshBox() {
    batteryThreshBox_ = new QWidget(this);
    batterySection_ = makeSectionLabel(toText(detail_texts::kBatterySection));
    batterySlider_ =
        makeSlider({.minimum = 0, .maximum = 100, .unit = 1.0}, percentText, "Alert Threshold");
    batterySlider_->setNumber(20.0F);
    connect(batterySlider_, &QSlider::valueChanged, this, &DetailPanel::batteryThreshChanged);
    batteryValueLabel_ = makeValueLabel("20%");
    for (QWidget* const part :
         std::initializer_list<QWidget*>{batterySection_, batterySlider_, batteryValueLabel_}) {
        part->setParent(batteryThreshBox_);
    }
}

const SoundEvent* DetailPanel::selectedEvent() const {
    const std::size_t index = selectedIndex_();
    return index < sm_.events.size() ? &sm_.events[index] : nullptr;
}

DetailPanel::Watched DetailPanel::watched() const {
    return {.trusted = deps_.keys.trusted(),
            .tapActive = deps_.keyboardMonitor.active,
            .sensorFound = deps_.lidMonitor.sensorFound};
}

void DetailPanel::refreshDetail() {
    const SoundEvent* const event = selectedEvent();
    if (event == nullptr) {
        return;
    }
    shown_ = watched();
    show(detailView(*event, {.events = sm_.events,
                             .currentTheme = sm_.currentTheme,
                             .isCustomThemeActive = sm_.isCustomThemeActive(),
                             .files = deps_.files,
                             .resourceFolder = deps_.resourceFolder,
                             .isAppleSilicon = deps_.isAppleSilicon,
                             .sensorFound = shown_.sensorFound,
                             .trusted = shown_.trusted,
                             .tapActive = shown_.tapActive}));
}

void DetailPanel::show(const DetailView& view) {
    eventEmoji_->setText(QString::fromStdString(view.emoji));
    eventTitle_->setText(QString::fromStdString(view.title));
    soundText_ = QString::fromStdString(view.soundText);
    if (!view.hasOwnSound && removeSoundBtn_->hasFocus()) {
        loadBtn_->setFocus();
    }
    removeSoundBtn_->setVisible(view.hasOwnSound);
    volumeSlider_->setNumber(view.volume);
    volumeLabel_->setText(QString::fromStdString(view.volumeText));
    triggerInfo_->setText(QString::fromStdString(view.triggerText));
    counterLabel_->setText(QString::fromStdString(view.counterText));
    {
        const QSignalBlocker silently(enableSwitch_);
        enableSwitch_->setChecked(view.switchIsOn);
    }
    enableSwitch_->setEnabled(view.switchIsEnabled);
    enableSwitch_->setAccessibleName(eventTitle_->text());
    veil_->setAlpha(view.alpha);
    showBox(view);
    arrange();
}

void DetailPanel::showBox(const DetailView& view) {
    box_ = view.box;
    thresholdBox_->setVisible(box_ == DetailBox::threshold);
    permissionBox_->setVisible(box_ == DetailBox::permission);
    intelLockBox_->setVisible(box_ == DetailBox::intelLock);
    batteryThreshBox_->setVisible(box_ == DetailBox::batteryThreshold);
    const QString text = QString::fromStdString(view.thresholdText);
    if (box_ == DetailBox::threshold) {
        thresholdSlider_->setNumber(view.threshold);
        thresholdSlider_->setEnabled(view.thresholdIsEnabled);
        thresholdValueLabel_->setText(text);
        angleGauge_->threshold = view.threshold;
        angleGauge_->sensorAvailable = view.thresholdIsEnabled;
        angleGauge_->update();
    } else if (box_ == DetailBox::permission) {
        grantBtn_->setVisible(view.canGrant);
    } else if (box_ == DetailBox::batteryThreshold) {
        batterySlider_->setNumber(view.threshold);
        batteryValueLabel_->setText(text);
    }
    watch();
}

/// In the middle, where it is too long for its line; then the whole text shows under the pointer.
void DetailPanel::showSoundText() {
    QString line = soundText_;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QString fitting =
        soundLabel_->fontMetrics().elidedText(line, Qt::ElideMiddle, soundLabel_->width());
    soundLabel_->setText(fitting);
    soundLabel_->setToolTip(fitting == line ? QString() : Qt::convertFromPlainText(soundText_));
    soundLabel_->setAccessibleName(soundText_);
}

void DetailPanel::showCounter(std::int64_t triggerCount) {
    counterLabel_->setText(QString::fromStdString(counterText(triggerCount)));
}

void DetailPanel::setCurrentAngle(float degrees) {
    angleGauge_->currentAngle = degrees;
    angleGauge_->update();
}

void DetailPanel::detailToggle() {
    const SoundEvent* const event = selectedEvent();
    if (event == nullptr) {
        return;
    }
    sm_.setEnabled(enableSwitch_->isChecked(), event->id);
    onSettingsChanged_();
    if (event->id == event_ids::kKeyPress) {
        if (event->isEnabled) {
            deps_.keyboardMonitor.start();
        } else {
            deps_.keyboardMonitor.stop();
        }
    }
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

void DetailPanel::volumeChanged() {
    if (const SoundEvent* const event = selectedEvent()) {
        const float volume = volumeSlider_->number();
        volumeLabel_->setText(QString::fromStdString(volumeText(volume)));
        sm_.setVolume(volume, event->id);
    }
}

void DetailPanel::thresholdChanged() {
    const float degrees = thresholdSlider_->number();
    thresholdValueLabel_->setText(QString::fromStdString(degreesText(degrees)));
    sm_.setThreshold(degrees, event_ids::kLidAngle);
    deps_.lidMonitor.updateThreshold(degrees);
    angleGauge_->threshold = degrees;
    angleGauge_->update();
}

void DetailPanel::batteryThreshChanged() {
    const float percent = batterySlider_->number();
    batteryValueLabel_->setText(QString::fromStdString(percentText(percent)));
    sm_.setThreshold(percent, event_ids::kBatteryLow);
    deps_.resetBatteryLowFlag();
}

void DetailPanel::grantAccess() {
    deps_.keyPermissionPage.show();
}

bool DetailPanel::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::WindowActivate:
            // Elsewhere a permission may have been given, or a file removed.
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

/// Nobody tells of a permission, a tap or a sensor that comes or goes: they are looked at while they show.
void DetailPanel::watch() {
    const bool wanted =
        isVisible() && (box_ == DetailBox::permission || box_ == DetailBox::threshold);
    if (!wanted) {
        watch_.stop();
    } else if (!watch_.isActive()) {
        watch_.start();
    }
}

}  // namespace chimewerk
