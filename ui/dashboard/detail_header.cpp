// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/detail_header.h"

#include <QSignalBlocker>

#include "ui/rules/value_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

DetailHeader::DetailHeader(QWidget* panel, const std::function<void()>& onToggle)
    : PanelBox(panel),
      eventEmoji_(add(makeLabel({}, 40))),
      eventTitle_(add(makeLabel({}, 20, QFont::Bold))),
      enableSwitch_(add(new SwitchControl)),
      counterLabel_(
          add(makeLabel(worded("Triggered: 0 times"), 11, QFont::Normal, LabelColor::tertiary))) {
    // The ring around the switch extends beyond the margin of its track.
    setContentsMargins(SwitchControl::kOverhang, 0, SwitchControl::kOverhang, 0);
    eventEmoji_->setAlignment(Qt::AlignCenter);
    // Fonts differ in height, and not every emoji is measured in the same one.
    eventEmoji_->setFixedHeight(QFontMetrics(eventEmoji_->font()).height());
    connect(enableSwitch_, &SwitchControl::toggled, this, onToggle);
}

void DetailHeader::display(const DetailView& view) {
    eventEmoji_->setText(QString::fromStdString(view.emoji));
    eventTitle_->setText(worded(view.title));
    counterLabel_->setText(worded(view.counterText));
    const QSignalBlocker silently(enableSwitch_);
    enableSwitch_->setChecked(view.switchIsOn);
    enableSwitch_->setEnabled(view.switchIsEnabled);
    enableSwitch_->setAccessibleName(eventTitle_->text());
}

void DetailHeader::showCounter(std::int64_t triggerCount) {
    counterLabel_->setText(worded(counterText(triggerCount)));
}

void DetailHeader::fill(Column& column) {
    constexpr int kEmojiWidth = 56;
    constexpr int kTitleGap = 16;
    constexpr int kSwitchGap = 8;
    const QSize track = enableSwitch_->sizeHint();
    const int top = column.bottom();
    column.addRow(
        {{.widget = *eventEmoji_, .width = kEmojiWidth},
         {.widget = *eventTitle_,
          .gap = kTitleGap,
          .width = column.width() - kEmojiWidth - kTitleGap - kSwitchGap - track.width()}});
    const int right = column.width() + 2 * SwitchControl::kOverhang;
    column.place(
        *enableSwitch_,
        {{right - track.width(), top + (column.bottom() - top - track.height()) / 2}, track});
    column.skip(6);
    column.add(*counterLabel_);
}

}  // namespace chimewerk
