// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/mpg123_decoder.h"

#include <mpg123.h>

#include <algorithm>

namespace chimewerk {

namespace {

ByteStream& streamOf(void* file) {
    return *static_cast<ByteStream*>(file);
}

ssize_t readBytes(void* file, void* target, std::size_t size) {
    return static_cast<ssize_t>(
        streamOf(file).read(std::span(static_cast<std::byte*>(target), size)));
}

off_t seek(void* file, off_t offset, int whence) {
    return streamOf(file).seek(offset, whence);
}

struct CloseMp3 {
    void operator()(mpg123_handle* mp3) const { mpg123_delete(mp3); }
};

/// An MP3 decoder. Not libsndfile, which estimates the length of a file without a table of contents
/// from its first frame, and then stops there.
class Mpg123Decoder final : public Decoder {
public:
    /// Returns false if the file holds no sound that can be decoded.
    bool open(ByteStream& file) {
        constexpr long kFlags = MPG123_QUIET | MPG123_FORCE_FLOAT | MPG123_GAPLESS |
                                MPG123_SKIP_ID3V2 | MPG123_NO_FRANKENSTEIN;
        long rate = 0;
        int encoding = 0;
        if (!mp3_ || mpg123_param(mp3_.get(), MPG123_FLAGS, kFlags, 0) != MPG123_OK ||
            mpg123_replace_reader_handle(mp3_.get(), readBytes, seek, nullptr) != MPG123_OK ||
            mpg123_open_handle(mp3_.get(), &file) != MPG123_OK ||
            mpg123_getformat(mp3_.get(), &rate, &channels_, &encoding) != MPG123_OK) {
            return false;
        }
        rate_ = static_cast<int>(rate);
        return rate_ > 0 && channels_ > 0 && encoding == MPG123_ENC_FLOAT_32;
    }

    int rate() const override { return rate_; }
    int channels() const override { return channels_; }
    double seconds() const override {
        return static_cast<double>(std::max<off_t>(mpg123_length(mp3_.get()), 0)) / rate_;
    }
    std::size_t read(std::span<float> samples) override {
        std::size_t bytes = 0;
        mpg123_read(mp3_.get(), samples.data(), samples.size_bytes(), &bytes);
        return bytes / sizeof(float) / static_cast<std::size_t>(channels_);
    }

private:
    std::unique_ptr<mpg123_handle, CloseMp3> mp3_{mpg123_new(nullptr, nullptr)};
    int rate_ = 0;
    int channels_ = 0;
};

}  // namespace

std::unique_ptr<Decoder> openMpg123Decoder(ByteStream& file) {
    auto decoder = std::make_unique<Mpg123Decoder>();
    return decoder->open(file) ? std::move(decoder) : nullptr;
}

}  // namespace chimewerk
