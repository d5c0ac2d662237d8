// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/sound_loader.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QProgressBar>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>
#include <utility>

#include "ui/controls/emoji_text.h"
#include "ui/controls/fonts.h"
#include "ui/controls/labels_and_buttons.h"
#include "ui/controls/wording.h"
#include "ui/rules/detail_texts.h"
#include "ui/rules/value_texts.h"

namespace chimewerk {

namespace {

constexpr int kTextWidth = 320;

/// Returns a warning sign in the emoji font of the other pictures. `scale` is the screen's.
QPixmap warningSign(qreal scale) {
    constexpr int kSide = 40;
    QPixmap pixmap(QSize(kSide, kSide) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setFont(systemFont(32));
    drawText(painter, QRect(0, 0, kSide, kSide), Qt::AlignCenter, QStringLiteral("\u26A0\uFE0F"));
    return pixmap;
}

/// Returns the file types as patterns for any case: some file dialogs do not match "KNOCK.WAV"
/// by "*.wav".
QString nameFilter() {
    QStringList patterns;
    for (const std::string_view type : detail_texts::kSoundFileTypes) {
        QString pattern = QStringLiteral("*.");
        for (const QChar letter : QString::fromUtf8(type)) {
            pattern +=
                letter.isLetter() ? QStringLiteral("[%1%2]").arg(letter, letter.toUpper()) : letter;
        }
        patterns += pattern;
    }
    return worded("Sound Files (%1)").arg(patterns.join(QLatin1Char(' ')));
}

/// Returns the bytes of the path, which need not be valid text; empty if the URL is no local file.
std::string pathOf(const QUrl& url) {
    return url.isLocalFile()
               ? QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1())
                     .toStdString()
               : std::string();
}

QUrl musicFolder() {
    return QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
}

/// Shows that a file is being copied and offers to cancel. Blocks its window at once and appears
/// after half a second.
class WaitDialog final : public QDialog {
public:
    WaitDialog(QWidget* window, const QString& name) : QDialog(window) {
        setWindowTitle(worded("Load Sound"));
        setWindowModality(Qt::WindowModal);
        auto* const column = new QVBoxLayout(this);
        column->setContentsMargins(20, 18, 20, 16);
        column->setSpacing(12);
        auto* const text = makeLabel({}, 13);
        text->setText(text->fontMetrics().elidedText(worded("Copying “%1”…").arg(name),
                                                     Qt::ElideMiddle, kTextWidth));
        column->addWidget(text);
        auto* const bar = new QProgressBar;
        bar->setRange(0, 0);
        bar->setTextVisible(false);
        bar->setFixedWidth(kTextWidth);
        bar->setAccessibleName(worded("Copying"));
        column->addWidget(bar);
        auto* const cancel = makeButton(worded("Cancel"));
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
        column->addWidget(cancel, 0, Qt::AlignRight);
        setFixedSize(sizeHint());

        setAttribute(Qt::WA_DontShowOnScreen);
        show();
        QTimer::singleShot(std::chrono::milliseconds(500), this, [this] {
            hide();
            setAttribute(Qt::WA_DontShowOnScreen, false);
            show();
        });
    }
};

}  // namespace

SoundLoader::SoundLoader(QWidget& widget, SoundFolder& folder)
    : QObject(&widget), widget_(widget), folder_(folder), lastFolder_(musicFolder()) {}

void SoundLoader::chooseFile(Loaded onLoaded) {
    if (dialog_ != nullptr) {
        return;
    }
    onLoaded_ = std::move(onLoaded);
    auto* const dialog = new QFileDialog(widget_.window(), worded("Load Sound"));
    dialog_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setPalette(widget_.window()->palette());
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    dialog->setNameFilter(nameFilter());
    dialog->setDirectoryUrl(lastFolder_);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        lastFolder_ = dialog->directoryUrl();
        dialog_.clear();
        const QList<QUrl> chosen = dialog->selectedUrls();
        if (const std::string path = chosen.isEmpty() ? "" : pathOf(chosen.first());
            !path.empty()) {
            load(path);
        }
    });
    dialog->open();
}

void SoundLoader::load(const std::string& file) {
    showWait(file);
    addition_ = folder_.add(file, [this](const SoundFolder::Outcome& outcome) { finish(outcome); });
}

void SoundLoader::showWait(const std::string& file) {
    auto* const wait =
        new WaitDialog(widget_.window(), QString::fromStdString(lastPathComponent(file)));
    wait->setPalette(widget_.window()->palette());
    dialog_ = wait;
    connect(wait, &QDialog::rejected, this, [this, wait] {
        addition_.reset();
        dialog_.clear();
        wait->deleteLater();
    });
}

void SoundLoader::finish(const SoundFolder::Outcome& outcome) {
    addition_.reset();
    // Deleted, not rejected: a rejection would cancel the copy.
    delete std::exchange(dialog_, nullptr).data();
    switch (outcome.kind) {
        case SoundFolder::Outcome::Kind::added:
            onLoaded_(outcome.path);
            break;
        case SoundFolder::Outcome::Kind::notCopied:
            showSoundError(worded(detail_texts::kNotCopied) +
                           QString::fromStdString(outcome.error));
            break;
        case SoundFolder::Outcome::Kind::notASound:
            showSoundError(worded(detail_texts::kNotASound));
            break;
    }
}

void SoundLoader::showSoundError(const QString& message) {
    auto* const alert =
        new QMessageBox(QMessageBox::Warning, QStringLiteral("Chimewerk"),
                        worded(detail_texts::kLoadErrorTitle), QMessageBox::Ok, widget_.window());
    dialog_ = alert;
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setPalette(widget_.window()->palette());
    alert->setIconPixmap(warningSign(widget_.devicePixelRatioF()));
    alert->setTextFormat(Qt::PlainText);
    alert->setInformativeText(message);
    if (auto* const title = alert->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
        title->setFont(systemFont(14, QFont::Bold));
    }
    if (auto* const text =
            alert->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
        text->setFont(systemFont(12));
        text->setFixedWidth(kTextWidth);
    }
    alert->open();
}

}  // namespace chimewerk
