#include <algorithm>

#include "ui/controls/column.h"
#include "ui/dashboard/detail_panel.h"

namespace chimewerk {

namespace {

constexpr int kMargin = 28;
constexpr int kValueWidth = 60;
constexpr int kGaugeHeight = 130;
/// As low as the dial may get where long texts leave no more room.
constexpr int kLowestGauge = 84;
constexpr int kBottomMargin = 8;

}  // namespace

/// With the controls, whatever the direction of their own language is.
void DetailPanel::alignTexts() {
    for (QLabel* const label : findChildren<QLabel*>()) {
        label->setAlignment(Qt::AlignAbsolute | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) |
                            (label->wordWrap() ? Qt::AlignTop : Qt::AlignVCenter));
    }
    eventEmoji_->setAlignment(Qt::AlignCenter);
}

void DetailPanel::arrange() {
    const int excess = arrange(kGaugeHeight) - (height() - kBottomMargin);
    if (excess > 0 && box_ == DetailBox::threshold) {
        arrange(std::max(kLowestGauge, kGaugeHeight - excess));
    }
    showSoundText();
}

/// Places everything and tells where it ends.
int DetailPanel::arrange(int gaugeHeight) {
    Column column(layoutDirection(), width(), {kMargin, kMargin, kMargin, 0});
    const QSize track = enableSwitch_->sizeHint();
    const int top = column.bottom();
    column.addRow({{.widget = *eventEmoji_, .width = 56},
                   {.widget = *eventTitle_,
                    .gap = 16,
                    .width = column.width() - 56 - 16 - 8 - track.width()}});
    column.place(*enableSwitch_, {{width() - kMargin + SwitchControl::overhang - track.width(),
                                   top + (column.bottom() - top - track.height()) / 2},
                                  track});
    column.skip(6);
    column.add(*counterLabel_);
    column.skip(14);
    column.add(*soundSection_);
    column.skip(6);
    column.add(*soundLabel_);
    column.skip(8);
    column.addRow({{.widget = *loadBtn_},
                   {.widget = *testBtn_, .gap = 8},
                   {.widget = *removeSoundBtn_, .gap = 8}});
    column.skip(20);
    column.add(*volumeSection_);
    column.skip(6);
    column.addRow({{.widget = *volumeSlider_, .width = 220},
                   {.widget = *volumeLabel_, .gap = 10, .width = kValueWidth}});
    column.skip(20);
    column.add(*triggerSection_);
    column.skip(6);
    column.add(*triggerInfo_);
    column.skip(18);
    return arrangeBoxes(column.bottom(), gaugeHeight);
}

int DetailPanel::arrangeBoxes(int top, int gaugeHeight) {
    const int inner = width() - 2 * kMargin;
    const auto put = [this, top](QWidget& box, int overhang, int bottom) {
        box.setGeometry(kMargin - overhang, top - overhang, width() - 2 * (kMargin - overhang),
                        bottom);
        return top - overhang + bottom;
    };

    // The dial's labels reach beyond the box that the dial is meant for.
    constexpr int kOverhang = AngleGaugeView::overhang;
    Column angle(layoutDirection(), inner + 2 * kOverhang, {kOverhang, 0, kOverhang, 0});
    angleGauge_->setGeometry(0, 0, inner + 2 * kOverhang, gaugeHeight + kOverhang);
    angle.skip(gaugeHeight + kOverhang + 8);
    angle.add(*angleSection_);
    angle.skip(6);
    angle.addRow({{.widget = *thresholdSlider_, .width = 200},
                  {.widget = *thresholdValueLabel_, .gap = 10, .width = kValueWidth}});
    const int angleEnd = put(*thresholdBox_, kOverhang, angle.bottom() + 4);

    Column permission(layoutDirection(), inner, {});
    permission.add(*permissionText_);
    permission.skip(6);
    permission.addRow({{.widget = *grantBtn_}});
    const int permissionEnd = put(*permissionBox_, 0, permission.bottom());

    Column lock(layoutDirection(), inner, {0, 8, 0, 0});
    lock.addRow({{.widget = *lockEmoji_}, {.widget = *lockTitle_, .gap = 10}});
    lock.skip(10);
    lock.add(*lockText_);
    const int lockEnd = put(*intelLockBox_, 0, lock.bottom());

    Column battery(layoutDirection(), inner, {});
    battery.add(*batterySection_);
    battery.skip(6);
    battery.addRow({{.widget = *batterySlider_, .width = 200},
                    {.widget = *batteryValueLabel_, .gap = 8, .width = kValueWidth}});
    const int batteryEnd = put(*batteryThreshBox_, 0, battery.bottom() + 4);

    switch (box_) {
        case DetailBox::threshold:
            return angleEnd;
        case DetailBox::permission:
            return permissionEnd;
        case DetailBox::intelLock:
            return lockEnd;
        case DetailBox::batteryThreshold:
            return batteryEnd;
        case DetailBox::none:
            break;
    }
    return top;
}

}  // namespace chimewerk
