// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/sound_loader.h"

#include <QFileDialog>
#include <QStandardPaths>
#include <QTimer>
#include <chrono>
#include <utility>

#include "ui/controls/busy_bar.h"
#include "ui/controls/message_dialog.h"
#include "ui/rules/detail_texts.h"
#include "ui/rules/value_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

constexpr int kBarWidth = 300;

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
class WaitDialog final : public MessageDialog {
public:
    WaitDialog(QWidget& window, const QString& name)
        : MessageDialog(window, {.message = worded("Load Sound"),
                                 .informative = worded("Copying “%1”…").arg(name)}) {
        auto* const bar = new BusyBar(kBarWidth);
        bar->setAccessibleName(worded("Copying"));
        insert(bar);
        addButton(worded("Cancel"), QDialogButtonBox::RejectRole);

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
    auto* const wait = new WaitDialog(widget_, QString::fromStdString(lastPathComponent(file)));
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
            showSoundError(worded(filled(detail_texts::kNotCopied, outcome.error)));
            break;
        case SoundFolder::Outcome::Kind::notASound:
            showSoundError(worded(detail_texts::kNotASound));
            break;
    }
}

void SoundLoader::showSoundError(const QString& message) {
    auto* const alert =
        new MessageDialog(widget_, {.message = worded(detail_texts::kLoadErrorTitle),
                                    .informative = message,
                                    .sign = QStringLiteral("\u26A0\uFE0F")});
    dialog_ = alert;
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->addButton(worded("OK"), QDialogButtonBox::AcceptRole);
    alert->open();
}

}  // namespace chimewerk
