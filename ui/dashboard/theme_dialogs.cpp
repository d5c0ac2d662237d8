// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/theme_dialogs.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "ui/controls/chimewerk_style.h"
#include "ui/controls/color_scheme.h"
#include "ui/controls/fonts.h"
#include "ui/controls/labels_and_buttons.h"
#include "ui/controls/wording.h"

namespace chimewerk {

namespace {

constexpr int kFieldWidth = 220;
constexpr int kFieldHeight = 24;
constexpr int kTextWidth = 300;

/// Returns a text in up to three lines, cut in the middle if it is longer.
QLabel* makeLines(const QString& text, int size, QFont::Weight weight, LabelColor color) {
    QLabel* const label = makeLabel(text, size, weight, color);
    const QFontMetrics metrics(label->font());
    if (metrics.horizontalAdvance(text) > kTextWidth) {
        constexpr int kLines = 3;
        label->setText(metrics.elidedText(text, Qt::ElideMiddle, kTextWidth * kLines));
        label->setToolTip(text);
        label->setAccessibleName(text);
        label->setWordWrap(true);
        label->setFixedWidth(kTextWidth);
    }
    return label;
}

/// A dialog in the colours of its parent window: the texts, then what the caller inserts, then two
/// buttons. It deletes itself when closed.
class Question final : public QDialog {
public:
    Question(QWidget& parent, const DialogTexts& texts) : QDialog(parent.window()) {
        setAttribute(Qt::WA_DeleteOnClose);
        setModal(true);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint);
        setPalette(paletteOf(colorSchemeOf(*parent.window())));
        setWindowTitle(QStringLiteral("Chimewerk"));
        setAccessibleName(QString::fromStdString(texts.message));
        setAccessibleDescription(worded(texts.informative));
        fill(texts);
    }

    QPushButton& confirmButton() { return *confirm_; }
    /// Inserts a widget between the texts and the buttons.
    void insert(QWidget* widget) { layout_->insertWidget(2, widget, 0, Qt::AlignHCenter); }

private:
    void fill(const DialogTexts& texts) {
        layout_->setContentsMargins(24, 22, 24, 18);
        layout_->setSpacing(8);
        layout_->setSizeConstraint(QLayout::SetFixedSize);
        layout_->addWidget(
            makeLines(QString::fromStdString(texts.message), 14, QFont::Bold, LabelColor::label));
        layout_->addWidget(
            makeLines(worded(texts.informative), 12, QFont::Normal, LabelColor::secondary));
        auto* const buttons = new QDialogButtonBox;
        confirm_ = makeButton(worded(texts.confirm));
        confirm_->setDefault(true);
        buttons->addButton(confirm_, QDialogButtonBox::AcceptRole);
        QPushButton* const cancel = makeButton(worded(kCancelTitle));
        buttons->addButton(cancel, QDialogButtonBox::RejectRole);
        for (QPushButton* const button : {confirm_, cancel}) {
            button->setMinimumWidth(84);
        }
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        layout_->addSpacing(6);
        layout_->addWidget(buttons);
    }

    QVBoxLayout* const layout_ = new QVBoxLayout(this);
    QPushButton* confirm_ = nullptr;
};

}  // namespace

void askForName(QWidget& parent, const DialogTexts& texts, const QString& value,
                const QString& placeholder, std::function<void(const QString& name)> onConfirmed) {
    auto* const question = new Question(parent, texts);
    auto* const field = new QLineEdit(value);
    field->setFixedSize(kFieldWidth, kFieldHeight);
    field->setFont(systemFont(13));
    field->setPlaceholderText(placeholder);
    field->setAccessibleName(worded(texts.informative));
    field->selectAll();
    question->insert(field);
    QObject::connect(question, &QDialog::accepted, &parent,
                     [field, confirmed = std::move(onConfirmed)] { confirmed(field->text()); });
    question->show();
    field->setFocus();
}

void askToDestroy(QWidget& parent, const DialogTexts& texts, std::function<void()> onConfirmed) {
    auto* const question = new Question(parent, texts);
    question->confirmButton().setProperty(kDestructive, true);
    QObject::connect(question, &QDialog::accepted, &parent,
                     [confirmed = std::move(onConfirmed)] { confirmed(); });
    question->show();
}

}  // namespace chimewerk
