// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/sound_box.h"

#include "ui/rules/detail_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

SoundBox::SoundBox(QWidget* panel, const Callbacks& callbacks)
    : PanelBox(panel),
      soundSection_(add(makeSectionLabel(detail_texts::kSoundSection))),
      soundLabel_(add(makeLabel({}, 12, QFont::Normal, LabelColor::secondary))),
      loadBtn_(add(makeButton(worded(detail_texts::kLoadButton)))),
      testBtn_(add(makeButton(worded(detail_texts::kTestButton)))),
      removeSoundBtn_(add(makeButton(worded(detail_texts::kRemoveButton)))) {
    testBtn_->setAccessibleName(worded("Test Sound"));
    removeSoundBtn_->setAccessibleName(worded("Remove"));
    connect(loadBtn_, &QPushButton::clicked, this, callbacks.onLoad);
    connect(testBtn_, &QPushButton::clicked, this, callbacks.onTest);
    connect(removeSoundBtn_, &QPushButton::clicked, this, callbacks.onRemove);
}

void SoundBox::display(const DetailView& view) {
    soundText_ = QString::fromStdString(view.soundText);
    if (!view.hasOwnSound && removeSoundBtn_->hasFocus()) {
        loadBtn_->setFocus();
    }
    removeSoundBtn_->setVisible(view.hasOwnSound);
}

/// Cuts a text that is too long for its line in the middle, and shows all of it as a tooltip.
void SoundBox::showSoundText(int width) {
    QString line = soundText_;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QString fitting = soundLabel_->fontMetrics().elidedText(line, Qt::ElideMiddle, width);
    soundLabel_->setText(fitting);
    soundLabel_->setToolTip(fitting == line ? QString() : Qt::convertFromPlainText(soundText_));
    soundLabel_->setAccessibleName(soundText_);
}

void SoundBox::fill(Column& column) {
    column.add(*soundSection_);
    column.skip(6);
    showSoundText(column.width());
    column.add(*soundLabel_);
    column.skip(8);
    column.addRow({{.widget = *loadBtn_},
                   {.widget = *testBtn_, .gap = 8},
                   {.widget = *removeSoundBtn_, .gap = 8}});
}

}  // namespace chimewerk
