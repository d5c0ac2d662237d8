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

/// Lets the user choose a sound file and adds it to the sound folder. Meanwhile nothing else can be done in
/// the window, which goes on being painted; a copy that takes long can be given up.
class SoundLoader final : public QObject {
public:
    using Loaded = std::function<void(const std::string& path)>;

    /// For a widget in the window that is to wait; the object is its child. The folder outlives it.
    SoundLoader(QWidget& widget, SoundFolder& folder);

    /// Asks for a file. `onLoaded` is called later, with the absolute path of the sound in the folder, unless
    /// the user gives up or the file cannot be loaded, of which the user is told. Nothing while a file is
    /// being chosen or loaded.
    void chooseFile(Loaded onLoaded);

private:
    void load(const std::string& file);
    void finish(const SoundFolder::Outcome& outcome);
    void showWait(const std::string& file);
    void showSoundError(const QString& message);

    QWidget& widget_;
    SoundFolder& folder_;
    Loaded onLoaded_;
    /// Where the last file was chosen.
    QUrl lastFolder_;
    /// What the user is busy with.
    QPointer<QDialog> dialog_;
    std::unique_ptr<SoundFolder::Addition> addition_;
};

}  // namespace chimewerk
