#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace chimewerk {

class M4aModule;

/// The bytes of a file, or its beginning: what lies beyond reads as the end, but counts for its size.
struct VisibleFile {
    std::span<const std::byte> bytes;
    std::uint64_t size;
};

/// Decodes one sound from bytes in memory. Used by one thread at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Frames per second.
    virtual int rate() const = 0;
    /// Samples per frame, at least 1.
    virtual int channels() const = 0;
    /// The length in seconds as the file tells it, or else as counted in the bytes that are visible; 0 when
    /// it is not known.
    virtual double seconds() const = 0;

    /// Decodes the next frames into `samples`, interleaved, nominally from -1 to 1, and tells how many frames
    /// there were. Less than fit in, or 0, means that the sound has ended or that its rest is damaged.
    virtual std::size_t read(std::span<float> samples) = 0;
};

/// The formats that can be decoded. Any thread.
class Decoders {
public:
    /// `moduleFolder` holds the module for M4A, which is loaded when the first such sound is opened.
    explicit Decoders(const std::string& moduleFolder);
    ~Decoders();

    /// A decoder over the file, which must outlive it; null when it is of no known format or too damaged to
    /// begin.
    std::unique_ptr<Decoder> open(const VisibleFile& file) const;

private:
    std::unique_ptr<M4aModule> m4a_;
};

}  // namespace chimewerk
