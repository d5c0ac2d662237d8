// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

namespace chimewerk {

/// The folder of the sound files that the user has loaded. Main thread only.
class SoundFolder {
public:
    /// The result of adding a file.
    struct Outcome {
        enum class Kind {
            added,
            /// The folder cannot be made, or the file cannot be copied there.
            notCopied,
            /// The file holds no sound.
            notASound,
        };
        Kind kind = Kind::added;
        /// The absolute path of the sound to play; empty unless it was added.
        std::string path{};
        /// The system's description of why it was not copied, in the user's language; else empty.
        std::string error{};
    };
    using Done = std::function<void(const Outcome& outcome)>;

    /// A file that is being added. Destroying it before it is done undoes everything; `Done` is
    /// then not called.
    class Addition {
    public:
        virtual ~Addition() = default;
    };

    virtual ~SoundFolder() = default;

    /// Copies `file` into the folder under its own name, in place of a file that has that name, if
    /// it holds a sound. A file that lies there already, by whatever path, is used where it is and
    /// never removed. Returns at once; `done` is called later, once, unless the addition is
    /// destroyed before. On failure the folder is as it was.
    [[nodiscard]] virtual std::unique_ptr<Addition> add(const std::string& file, Done done) = 0;
};

}  // namespace chimewerk
