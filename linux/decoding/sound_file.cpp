// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sound_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <limits>
#include <new>

namespace chimewerk {

namespace {

/// A file whose head needs more bytes than this is not decoded, because that would block the main
/// thread. Large pictures may precede the sound.
constexpr std::int64_t kHeadBytes = std::int64_t{32} << 20U;
/// A sound of up to a second is decoded completely. The head of a longer one is long enough to play
/// until the thread that decodes the rest has run, even on a busy machine.
constexpr double kShortSeconds = 1;
constexpr std::size_t kHeadFrames = kOutputRate / 5;
constexpr double kLongestSeconds = 24 * 60 * 60;

}  // namespace

std::unique_ptr<SoundFile> SoundFile::open(const Decoders& decoders, const std::string& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    try {
        std::unique_ptr<SoundFile> sound(
            new SoundFile(std::move(file), static_cast<std::uint64_t>(status.st_size)));
        return sound->decodeHead(decoders) ? std::move(sound) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

SoundFile::SoundFile(FileDescriptor file, std::uint64_t size)
    : file_(std::move(file)), stream_(file_.get(), size) {}

bool SoundFile::decodeHead(const Decoders& decoders) {
    stream_.setAllowance(kHeadBytes);
    auto decoder = decoders.open(stream_);
    reader_ = decoder ? PcmReader::over(std::move(decoder)) : nullptr;
    if (!reader_) {
        return false;
    }
    const double stated = reader_->decoder().seconds();
    seconds_ = stated > 0 ? std::min(stated, kLongestSeconds) : 0;
    const double complete = seconds_ > 0 ? seconds_ : kShortSeconds;
    // Slightly more than the whole sound, to reach its end.
    const std::size_t more =
        complete <= kShortSeconds ? static_cast<std::size_t>(complete * kOutputRate) : 0;
    head_.resize((more + kHeadFrames) * kOutputChannels);
    const std::size_t frames = reader_->read(head_);
    headIsAll_ = frames * kOutputChannels < head_.size();
    head_.resize(frames * kOutputChannels);
    if (headIsAll_) {
        seconds_ = static_cast<double>(frames) / kOutputRate;
        close();
    }
    stream_.setAllowance(std::numeric_limits<std::int64_t>::max());
    return !head_.empty();
}

std::size_t SoundFile::readRest(std::span<float> stereo) {
    std::size_t frames = 0;
    try {
        frames = reader_ ? reader_->read(stereo) : 0;
    } catch (const std::bad_alloc&) {
        // The sound ends here.
    }
    if (frames < stereo.size() / kOutputChannels) {
        close();
    }
    return frames;
}

void SoundFile::close() {
    reader_ = nullptr;
    file_ = FileDescriptor();
}

}  // namespace chimewerk
