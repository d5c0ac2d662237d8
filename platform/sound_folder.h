// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

namespace chimewerk {

/// The folder of the sound files that the user has added. Main thread only.
class SoundFolder {
public:
    /// The result of adding a file.
    struct Outcome {
        enum class Kind {
            added,
            /// The folder cannot be made, or the file cannot be copied.
            notCopied,
            /// The file holds no sound.
            notASound,
        };
        Kind kind = Kind::added;
        /// The absolute path of the sound to play; empty unless the file was added.
        std::string path{};
        /// The system's description of the copy error, in the user's language; empty if there
        /// was none.
        std::string error{};
    };
    using Done = std::function<void(const Outcome& outcome)>;

    /// A file that is being added. Destroying it early undoes everything; `Done` is then
    /// not called.
    class Addition {
    public:
        virtual ~Addition() = default;
    };

    virtual ~SoundFolder() = default;

    /// Copies `file` into the folder under its own name if it holds a sound; replaces a file of
    /// that name. A file that is already in the folder, by whatever path, is used in place and
    /// never removed. Returns at once; `done` is called later, once, unless the addition is
    /// destroyed first. On failure the folder is unchanged.
    [[nodiscard]] virtual std::unique_ptr<Addition> add(const std::string& file, Done done) = 0;
};

}  // namespace chimewerk
