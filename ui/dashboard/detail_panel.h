#pragma once

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "ui/controls/switch_control.h"
#include "ui/controls/value_slider.h"
#include "ui/dashboard/angle_gauge_view.h"
#include "ui/dashboard/dashboard_dependencies.h"
#include "ui/dashboard/sound_loader.h"
#include "ui/rules/detail_view.h"

namespace chimewerk {

/// The right part of the dashboard: the settings of the event that is selected.
class DetailPanel final : public QWidget {
public:
    /// `selectedIndex` tells which of the sound library's events is shown. `onSettingsChanged` is called when
    /// the user has changed something that the list of events shows too; it draws the list anew and keeps the
    /// selection. The dependencies outlive the panel.
    DetailPanel(const DashboardDependencies& around, std::function<std::size_t()> selectedIndex,
                std::function<void()> onSettingsChanged);

    /// Shows the selected event as it is now; nothing when there is no such event.
    void refreshDetail();
    /// Shows that the selected event has been triggered so often.
    void showCounter(std::int64_t triggerCount);
    /// The lid's angle in degrees, whichever event is selected.
    void setCurrentAngle(float degrees);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class Veil;

    /// What changes by itself, without an announcement.
    struct Watched {
        bool trusted;
        bool tapActive;
        bool sensorFound;
        bool operator==(const Watched&) const = default;
    };

    void buildDetailPanel();
    ValueSlider* makeSlider(const ValueSlider::Range& range, ValueSlider::Text text,
                            const char* name);
    void buildThresholdBox();
    void buildPermissionBox();
    void buildIntelLockBox();
    void buildBatteryThreshBox();

    void detailToggle();
    void loadSound();
    void previewSound();
    void removeSound();
    void volumeChanged();
    void thresholdChanged();
    void batteryThreshChanged();
    void grantAccess();

    const SoundEvent* selectedEvent() const;
    Watched watched() const;
    void watch();
    void show(const DetailView& view);
    void showSoundText();
    void showBox(const DetailView& view);
    // How it is laid out is in a file of its own.
    void alignTexts();
    void arrange();
    int arrange(int gaugeHeight);
    int arrangeBoxes(int top, int gaugeHeight);

    const DashboardDependencies& deps_;
    SoundManager& sm_;
    const std::function<std::size_t()> selectedIndex_;
    const std::function<void()> onSettingsChanged_;
    SoundLoader loader_;
    QTimer watch_;
    Watched shown_{};
    DetailBox box_ = DetailBox::none;
    QString soundText_;

    QLabel* eventEmoji_ = nullptr;
    QLabel* eventTitle_ = nullptr;
    SwitchControl* enableSwitch_ = nullptr;
    QLabel* counterLabel_ = nullptr;
    QLabel* soundSection_ = nullptr;
    QLabel* soundLabel_ = nullptr;
    QPushButton* loadBtn_ = nullptr;
    QPushButton* testBtn_ = nullptr;
    QPushButton* removeSoundBtn_ = nullptr;
    QLabel* volumeSection_ = nullptr;
    ValueSlider* volumeSlider_ = nullptr;
    std::shared_ptr<const void> heldWrites_;
    QLabel* volumeLabel_ = nullptr;
    QLabel* triggerSection_ = nullptr;
    QLabel* triggerInfo_ = nullptr;

    QWidget* thresholdBox_ = nullptr;
    AngleGaugeView* angleGauge_ = nullptr;
    QLabel* angleSection_ = nullptr;
    ValueSlider* thresholdSlider_ = nullptr;
    QLabel* thresholdValueLabel_ = nullptr;

    QWidget* permissionBox_ = nullptr;
    QLabel* permissionText_ = nullptr;
    QPushButton* grantBtn_ = nullptr;

    QWidget* intelLockBox_ = nullptr;
    QLabel* lockEmoji_ = nullptr;
    QLabel* lockTitle_ = nullptr;
    QLabel* lockText_ = nullptr;

    QWidget* batteryThreshBox_ = nullptr;
    QLabel* batterySection_ = nullptr;
    ValueSlider* batterySlider_ = nullptr;
    QLabel* batteryValueLabel_ = nullptr;

    Veil* veil_ = nullptr;
};

}  // namespace chimewerk
