// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/xdg_sound_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "linux/base/file_descriptor.h"
#include "linux/decoding/sound_file.h"
#include "linux/storage/atomic_file.h"
#include "linux/storage/file_copy.h"

namespace chimewerk {

namespace {

using Outcome = SoundFolder::Outcome;

/// An outcome; or a finished copy that only has to be renamed.
struct Prepared {
    Outcome outcome;
    std::shared_ptr<AtomicFile> copy = nullptr;
};

Outcome added(const std::string& path) {
    return {.kind = Outcome::Kind::added, .path = path};
}

Outcome notCopied(const std::error_code& error) {
    return {.kind = Outcome::Kind::notCopied, .error = error.message()};
}

Outcome notCopied(int error) {
    return notCopied(std::error_code(error, std::generic_category()));
}

/// Returns 0 if the file can be copied, else an error number.
int copyObstacle(const FileDescriptor& file, struct stat& status) {
    if (!file || fstat(file.get(), &status) != 0) {
        return errno;
    }
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : EOPNOTSUPP;
}

/// Copies one file into the folder, except for the last step: the renaming.
class Preparation {
public:
    Preparation(const std::string& folder, const Decoders& decoders, std::function<bool()> goOn)
        : folder_(folder), decoders_(decoders), goOn_(std::move(goOn)) {}

    Prepared prepare(const std::string& chosen) const {
        if (folder_.empty()) {
            return {notCopied(ENOENT)};
        }
        std::error_code error;
        std::filesystem::create_directories(folder_, error);
        if (error) {
            return {notCopied(error)};
        }
        AtomicFile::removeLeftovers(folder_);
        // O_NONBLOCK: if this is a pipe, does not wait for a writer.
        const FileDescriptor file(
            open(chosen.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        struct stat status {};
        if (const int obstacle = copyObstacle(file, status); obstacle != 0) {
            return {notCopied(obstacle)};
        }
        const std::string destination = folder_ + "/" + chosen.substr(chosen.rfind('/') + 1);
        if (isSameFile(destination, status)) {
            return {isSound(destination) ? added(destination) : notASound()};
        }
        if (struct stat there{};
            lstat(destination.c_str(), &there) == 0 && S_ISDIR(there.st_mode)) {
            return {notCopied(EISDIR)};
        }
        // Checked before copying, which may take long for a large file that is no sound.
        return isSound(chosen) ? copy(file, status.st_mode, destination) : Prepared{notASound()};
    }

private:
    static Outcome notASound() { return {.kind = Outcome::Kind::notASound}; }

    static bool isSameFile(const std::string& path, const struct stat& file) {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 && status.st_dev == file.st_dev &&
               status.st_ino == file.st_ino;
    }

    bool isSound(const std::string& path) const {
        return SoundFile::open(decoders_, path) != nullptr;
    }

    Prepared copy(const FileDescriptor& file, mode_t mode, const std::string& destination) const {
        std::error_code error;
        auto copy = std::make_shared<AtomicFile>(folder_, error);
        if (error) {
            return {notCopied(error)};
        }
        constexpr mode_t kOwner = 0600;
        constexpr mode_t kReaders = 0044;
        // Failure is ignored: not every file system has permissions.
        static_cast<void>(fchmod(copy->descriptor(), kOwner | (mode & kReaders)));
        error = copyFile(file.get(), copy->descriptor(), goOn_);
        if (error) {
            return {notCopied(error)};
        }
        if (!isSound(copy->path())) {
            return {notASound()};
        }
        return {added(destination), std::move(copy)};
    }

    const std::string& folder_;
    const Decoders& decoders_;
    const std::function<bool()> goOn_;
};

/// Renames the copy to its final name.
Outcome finish(const Prepared& prepared) {
    if (prepared.copy) {
        if (const std::error_code error = prepared.copy->takePlace(prepared.outcome.path)) {
            return notCopied(error);
        }
    }
    return prepared.outcome;
}

}  // namespace

class XdgSoundFolder::Running final : public Addition {
public:
    struct State {
        std::atomic<bool> givenUp = false;
        Done done;  // Main thread only.
    };

    explicit Running(Done done) { state_->done = std::move(done); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() override {
        state_->givenUp = true;
        state_->done = nullptr;
    }

    const std::shared_ptr<State>& state() const { return state_; }

private:
    const std::shared_ptr<State> state_ = std::make_shared<State>();
};

XdgSoundFolder::XdgSoundFolder(MainQueue& queue, const Decoders& decoders,
                               const std::string& dataHome)
    : queue_(queue), decoders_(decoders), folder_(dataHome.empty() ? "" : dataHome + "/Chimewerk") {
    if (!folder_.empty()) {
        AtomicFile::removeLeftovers(folder_);
    }
}

std::unique_ptr<SoundFolder::Addition> XdgSoundFolder::add(const std::string& file, Done done) {
    auto running = std::make_unique<Running>(std::move(done));
    worker_.post([this, file, state = running->state()](const std::stop_token& stop) {
        const auto goOn = [&] { return !state->givenUp && !stop.stop_requested(); };
        Prepared prepared = Preparation(folder_, decoders_, goOn).prepare(file);
        if (!goOn()) {
            return;
        }
        queue_.post([state, prepared = std::move(prepared)] {
            if (!state->givenUp) {
                const Outcome outcome = finish(prepared);
                // `done` may destroy the addition, and with it `state->done`.
                const Done report = std::exchange(state->done, nullptr);
                report(outcome);
            }
        });
    });
    return running;
}

}  // namespace chimewerk
