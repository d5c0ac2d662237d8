// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sound_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

namespace chimewerk {

namespace {

constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 30U;
/// How many bytes after the tags are read to decode the head from, at first, and again if those are
/// too few.
constexpr std::uint64_t kFirstBytes = std::uint64_t{256} * 1024;
constexpr std::uint64_t kMoreBytes = 16 * kFirstBytes;
/// A sound of up to a second is decoded completely. The head of a longer one lasts until the thread
/// that decodes the rest gets its turn on a busy machine.
constexpr std::size_t kShortFrames = kOutputRate;
constexpr std::size_t kHeadFrames = kOutputRate / 5;

}  // namespace

std::unique_ptr<SoundFile> SoundFile::open(const Decoders& decoders, const std::string& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size <= 0) {
        return nullptr;
    }
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size >= kTooLarge) {
        return nullptr;
    }
    try {
        std::unique_ptr<SoundFile> sound(new SoundFile(decoders, std::move(file), size));
        return sound->decodeHead() ? std::move(sound) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

SoundFile::SoundFile(const Decoders& decoders, FileDescriptor file, std::uint64_t size)
    : decoders_(decoders), file_(std::move(file)), size_(size) {}

bool SoundFile::decodeHead() {
    container_ = inspectSoundContainer(
        [this](std::uint64_t offset, std::span<std::byte> target) {
            return readAt(offset, target);
        },
        size_);
    if (container_.truncated) {
        return false;
    }
    if (container_.audioStart >= size_) {
        container_.audioStart = 0;
    }
    for (const std::uint64_t beyondTags : {kFirstBytes, kMoreBytes, size_}) {
        if (decodeHeadFrom(
                static_cast<std::size_t>(std::min(size_, container_.audioStart + beyondTags)))) {
            return !head_.empty();
        }
        if (wholeIsVisible()) {
            return false;
        }
    }
    return false;
}

/// Decodes the head from the file's first `visible` bytes. Returns false if they are too few
/// for it.
bool SoundFile::decodeHeadFrom(std::size_t visible) {
    if (!begin(visible)) {
        return false;
    }
    const double statedSeconds = reader_->decoder().seconds();
    const bool isShort =
        wholeIsVisible() && statedSeconds * kOutputRate <= static_cast<double>(kShortFrames);
    const std::size_t wanted = isShort ? kShortFrames + kHeadFrames : kHeadFrames;
    head_.resize(wanted * kOutputChannels);
    const std::size_t frames = reader_->read(head_);
    head_.resize(frames * kOutputChannels);
    if (frames < wanted && !wholeIsVisible()) {
        return false;
    }
    headIsAll_ = frames < wanted;
    if (headIsAll_) {
        seconds_ = static_cast<double>(frames) / kOutputRate;
    } else if (container_.seconds > 0) {
        seconds_ = container_.seconds;
    } else if (container_.isMp3) {
        // Estimated from the visible frames.
        const auto audio = static_cast<double>(size_ - container_.audioStart);
        seconds_ = statedSeconds * audio / static_cast<double>(visible - container_.audioStart);
    } else {
        seconds_ = statedSeconds;
    }
    return true;
}

/// Opens a decoder for the file's first `visible` bytes. Returns false if that is not possible.
bool SoundFile::begin(std::size_t visible) {
    reader_ = nullptr;
    if (!readBytes(visible)) {
        return false;
    }
    VisibleFile file{.bytes = bytes_, .size = size_};
    if (container_.isMp3) {
        // The decoder looks for as many frames as the size allows, and prints an error if the table
        // of contents states more bytes than it finds.
        file.size = visible;
        patchTableOfContents(visible - static_cast<std::size_t>(container_.audioStart));
    }
    auto decoder = decoders_.open(file);
    reader_ = decoder ? PcmReader::over(std::move(decoder)) : nullptr;
    return reader_ != nullptr;
}

void SoundFile::patchTableOfContents(std::size_t bytes) {
    if (container_.sizeFieldAt == 0 || container_.sizeFieldAt + 4 > bytes_.size()) {
        return;
    }
    for (std::size_t i = 0; i < 4; ++i) {
        bytes_[container_.sizeFieldAt + i] = static_cast<std::byte>(bytes >> (8 * (3 - i)) & 0xFFU);
    }
}

std::size_t SoundFile::readRest(std::span<float> stereo) {
    if (headIsAll_) {
        return 0;
    }
    if (!wholeIsVisible()) {
        // Decodes again from the start, now of the whole file, and skips the head.
        if (!begin(static_cast<std::size_t>(size_))) {
            headIsAll_ = true;
            return 0;
        }
        std::vector<float> heard(head_.size());
        reader_->read(heard);
    }
    return reader_->read(stereo);
}

bool SoundFile::readBytes(std::size_t count) {
    const std::size_t before = bytes_.size();
    if (count > before) {
        bytes_.resize(count);
        if (readAt(before, std::span(bytes_).subspan(before)) < count - before) {
            return false;
        }
    }
    if (wholeIsVisible()) {
        file_ = FileDescriptor();
    }
    return true;
}

std::size_t SoundFile::readAt(std::uint64_t offset, std::span<std::byte> target) const {
    std::size_t done = 0;
    while (done < target.size()) {
        const ssize_t got = pread(file_.get(), target.data() + done, target.size() - done,
                                  static_cast<off_t>(offset + done));
        if (got == 0 || (got < 0 && errno != EINTR)) {
            break;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    }
    return done;
}

}  // namespace chimewerk
