#include "linux/sound_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "linux/sound_container.h"

namespace chimewerk {

namespace {

constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 30U;
/// How much of a file is read at first, and at second, to decode its head from, beyond the tags at its start.
constexpr std::uint64_t kFirstBytes = std::uint64_t{256} * 1024;
constexpr std::uint64_t kMoreBytes = 16 * kFirstBytes;
/// A sound of up to a second is decoded whole. Of a longer one the head must last until the thread that
/// decodes the rest gets its turn on a busy machine.
constexpr std::size_t kShortFrames = kOutputRate;
constexpr std::size_t kHeadFrames = kOutputRate / 4;

}  // namespace

std::unique_ptr<SoundFile> SoundFile::open(const Decoders& decoders, const std::string& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) {
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
    const SoundContainer container = inspectSoundContainer(
        [this](std::uint64_t offset, std::span<std::byte> target) { return readAt(offset, target); }, size_);
    if (container.truncated) {
        return false;
    }
    const std::uint64_t audioStart = container.audioStart < size_ ? container.audioStart : 0;
    for (const std::uint64_t beyondTags : {kFirstBytes, kMoreBytes, size_}) {
        const auto visible = static_cast<std::size_t>(std::min(size_, audioStart + beyondTags));
        if (!begin(visible)) {
            if (wholeIsVisible()) {
                return false;
            }
            continue;
        }
        const double visibleSeconds = reader_->decoder().seconds();
        const bool isShort =
            wholeIsVisible() && visibleSeconds * kOutputRate <= static_cast<double>(kShortFrames);
        const std::size_t wanted = isShort ? kShortFrames + kHeadFrames : kHeadFrames;
        head_.resize(wanted * kOutputChannels);
        const std::size_t frames = reader_->read(head_);
        head_.resize(frames * kOutputChannels);
        if (frames < wanted && !wholeIsVisible()) {
            continue;  // The bytes at hand did not yield a head's worth.
        }
        headIsAll_ = frames < wanted;
        const double decoded = static_cast<double>(frames) / kOutputRate;
        const double proportion =
            static_cast<double>(size_ - audioStart) / static_cast<double>(visible - audioStart);
        seconds_ = headIsAll_                 ? decoded
                   : container.seconds > 0    ? container.seconds
                   : container.lengthIsUntold ? visibleSeconds * proportion
                                              : visibleSeconds;
        return frames > 0;
    }
    return false;
}

/// Opens a decoder over the file's first `visible` bytes.
bool SoundFile::begin(std::size_t visible) {
    reader_ = nullptr;
    if (!readBytes(visible)) {
        return false;
    }
    auto decoder = decoders_.open({bytes_, size_});
    reader_ = decoder ? PcmReader::over(std::move(decoder)) : nullptr;
    return reader_ != nullptr;
}

std::size_t SoundFile::readRest(std::span<float> stereo) {
    if (headIsAll_) {
        return 0;
    }
    if (!wholeIsVisible()) {
        // Again from the start, now with the whole file in sight, past what has been heard already.
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
        const ssize_t got =
            pread(file_.get(), target.data() + done, target.size() - done, static_cast<off_t>(offset + done));
        if (got == 0 || (got < 0 && errno != EINTR)) {
            break;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    }
    return done;
}

}  // namespace chimewerk
