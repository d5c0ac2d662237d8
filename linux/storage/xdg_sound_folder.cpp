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

/// An outcome, or a copy that only has to take its place.
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

/// 0 when it is a file that can be copied.
int whyNoFile(const FileDescriptor& file, struct stat& status) {
    if (!file || fstat(file.get(), &status) != 0) {
        return errno;
    }
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : EOPNOTSUPP;
}

/// Puts one file into the folder, but for the last step.
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
        // Without waiting for a writer, in case it is a pipe.
        const FileDescriptor file(
            open(chosen.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        struct stat status {};
        if (const int why = whyNoFile(file, status); why != 0) {
            return {notCopied(why)};
        }
        const std::string destination = folder_ + "/" + chosen.substr(chosen.rfind('/') + 1);
        if (isSameFile(destination, status)) {
            return {isSound(destination) ? added(destination) : notASound()};
        }
        if (struct stat there{};
            lstat(destination.c_str(), &there) == 0 && S_ISDIR(there.st_mode)) {
            return {notCopied(EISDIR)};
        }
        // A film need not be copied to find out that it is no sound.
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
        // The sound is worth more than its permissions: not every file system has them.
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

/// The last step.
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
        Done done;  // main thread only
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
                // It may destroy the addition.
                const Done tell = std::exchange(state->done, nullptr);
                tell(outcome);
            }
        });
    });
    return running;
}

}  // namespace chimewerk
