#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "linux/decoding/decoder.h"
#include "linux/decoding/pcm_reader.h"
#include "linux/decoding/sound_container.h"

namespace chimewerk {

/// A sound file, opened and its head decoded, so that it can start at once however long it is: what follows
/// the head is read and decoded later, by whichever thread calls `readRest()`.
class SoundFile {
public:
    /// Null when `path` names no regular file, or one that is empty, of 1 GiB or more, cut off, of no known
    /// format or without a frame of sound. Never waits for a writer, as opening a FIFO would.
    static std::unique_ptr<SoundFile> open(const Decoders& decoders, const std::string& path);

    /// The beginning of the sound, stereo at the output rate; all of it when it is short.
    const std::vector<float>& head() const { return head_; }
    /// Whether the head is all there is.
    bool headIsAll() const { return headIsAll_; }
    /// The whole length in seconds; of a long file without a table of contents, about.
    double seconds() const { return seconds_; }

    /// Writes the frames that follow what has been read so far and tells how many; fewer than fit in only at
    /// the end. One thread at a time; may wait for the disk.
    std::size_t readRest(std::span<float> stereo);

private:
    SoundFile(const Decoders& decoders, FileDescriptor file, std::uint64_t size);
    bool decodeHead();
    bool decodeHeadFrom(std::size_t visible);
    bool begin(std::size_t visible);
    void tellTableOfContents(std::size_t bytes);
    bool readBytes(std::size_t count);
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> target) const;
    bool wholeIsVisible() const { return bytes_.size() == size_; }

    const Decoders& decoders_;
    FileDescriptor file_;  // Closed when all of it has been read.
    const std::uint64_t size_;
    SoundContainer container_;
    std::vector<std::byte> bytes_;  // The file's beginning, or all of it.
    std::unique_ptr<PcmReader> reader_;
    std::vector<float> head_;
    bool headIsAll_ = false;
    double seconds_ = 0;
};

}  // namespace chimewerk
