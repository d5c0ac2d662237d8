// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>
#include <QPointer>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "platform/sound_folder.h"

namespace chimewerk {

/// Lets the user choose a sound file and copies it into the sound folder. Dialogs block the window
/// meanwhile, but it is still painted, and the user can cancel a long copy.
class SoundLoader final : public QObject {
public:
    using Loaded = std::function<void(const std::string& path)>;

    /// `widget` is in the window to be blocked and becomes the parent of the loader. The folder
    /// must outlive both.
    SoundLoader(QWidget& widget, SoundFolder& folder);

    /// Opens a file dialog and returns at once. `onLoaded` is called later with the absolute path
    /// of the copy, unless the user cancels or the file cannot be loaded; a dialog then gives the
    /// reason. Does nothing while a file is being chosen or loaded.
    void chooseFile(Loaded onLoaded);

private:
    void load(const std::string& file);
    void finish(const SoundFolder::Outcome& outcome);
    void showWait(const std::string& file);
    void showSoundError(const QString& message);

    QWidget& widget_;
    SoundFolder& folder_;
    Loaded onLoaded_;
    /// The folder of the file chosen last.
    QUrl lastFolder_;
    /// The open dialog, if any.
    QPointer<QDialog> dialog_;
    std::unique_ptr<SoundFolder::Addition> addition_;
};

}  // namespace chimewerk
