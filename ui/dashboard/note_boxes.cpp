// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/note_boxes.h"

#include "ui/rules/detail_texts.h"
#include "ui/toolkit/emoji_text.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

TriggerBox::TriggerBox(QWidget* panel)
    : PanelBox(panel),
      triggerSection_(add(makeSectionLabel(detail_texts::kTriggerSection))),
      triggerInfo_(add(makeParagraph({}, 12, LabelColor::secondary))),
      silence_(add(makeParagraph({}, 12, LabelColor::label))) {}

void TriggerBox::display(const DetailView& view) {
    triggerInfo_->setText(worded(view.triggerText));
    silence_->setText(worded(view.silenceText));
    silence_->setVisible(!view.silenceText.empty());
}

void TriggerBox::fill(Column& column) {
    column.add(*triggerSection_);
    column.skip(6);
    column.add(*triggerInfo_);
    if (!silence_->isHidden()) {
        column.skip(8);
        column.add(*silence_);
    }
}

PermissionBox::PermissionBox(QWidget* panel, const std::function<void()>& onClick)
    : PanelBox(panel),
      permissionText_(add(makeParagraph({}, 11, LabelColor::secondary))),
      grantBtn_(add(makeButton({}))) {
    connect(grantBtn_, &QPushButton::clicked, this, onClick);
}

void PermissionBox::display(std::string_view text, std::string_view buttonTitle) {
    permissionText_->setText(worded(text));
    grantBtn_->setText(worded(buttonTitle));
    grantBtn_->setVisible(!buttonTitle.empty());
}

void PermissionBox::fill(Column& column) {
    column.add(*permissionText_);
    column.skip(6);
    column.addRow({{.widget = *grantBtn_}});
}

LockBox::LockBox(QWidget* panel)
    : PanelBox(panel),
      lockEmoji_(add(makeLabel(QString::fromUtf8(detail_texts::kLock), 36))),
      lockTitle_(add(
          makeLabel(worded(detail_texts::kLockTitle), 15, QFont::DemiBold, LabelColor::secondary))),
      lockText_(add(makeParagraph(detail_texts::kLockText, 11, LabelColor::tertiary))) {}

void LockBox::fill(Column& column) {
    column.skip(8);
    // The label would measure its emoji in a narrower font.
    const int lockWidth = textWidth(lockEmoji_->font(), lockEmoji_->text());
    column.addRow(
        {{.widget = *lockEmoji_, .width = lockWidth}, {.widget = *lockTitle_, .gap = 10}});
    column.skip(10);
    column.add(*lockText_);
}

}  // namespace chimewerk
