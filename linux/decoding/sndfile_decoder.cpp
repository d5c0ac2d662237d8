// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sndfile_decoder.h"

#include <sndfile.h>

#include <algorithm>
#include <span>

namespace chimewerk {

namespace {

ByteStream& streamOf(void* file) {
    return *static_cast<ByteStream*>(file);
}

sf_count_t length(void* file) {
    return streamOf(file).size();
}

sf_count_t tell(void* file) {
    return streamOf(file).position();
}

sf_count_t seek(sf_count_t offset, int whence, void* file) {
    return streamOf(file).seek(offset, whence);
}

sf_count_t readBytes(void* target, sf_count_t count, void* file) {
    const auto size = static_cast<std::size_t>(std::max<sf_count_t>(count, 0));
    return static_cast<sf_count_t>(
        streamOf(file).read(std::span(static_cast<std::byte*>(target), size)));
}

sf_count_t writeNothing(const void* /*source*/, sf_count_t /*count*/, void* /*file*/) {
    return 0;
}

struct CloseFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};

class SndfileDecoder final : public Decoder {
public:
    explicit SndfileDecoder(ByteStream& file) {
        static SF_VIRTUAL_IO io{length, seek, readBytes, writeNothing, tell};
        file_.reset(sf_open_virtual(&io, SFM_READ, &info_, &file));
    }

    bool isOpen() const { return file_ && info_.channels > 0 && info_.samplerate > 0; }

    int rate() const override { return info_.samplerate; }
    int channels() const override { return info_.channels; }
    double seconds() const override {
        // For a file of unknown length, libsndfile gives the largest possible number of frames.
        const bool known = info_.frames > 0 && info_.frames < SF_COUNT_MAX;
        return known ? static_cast<double>(info_.frames) / info_.samplerate : 0.0;
    }
    std::size_t read(std::span<float> samples) override {
        const auto frames =
            static_cast<sf_count_t>(samples.size() / static_cast<std::size_t>(info_.channels));
        return static_cast<std::size_t>(
            std::max<sf_count_t>(0, sf_readf_float(file_.get(), samples.data(), frames)));
    }

private:
    SF_INFO info_{};
    std::unique_ptr<SNDFILE, CloseFile> file_;
};

}  // namespace

std::unique_ptr<Decoder> openSndfileDecoder(ByteStream& file) {
    auto decoder = std::make_unique<SndfileDecoder>(file);
    return decoder->isOpen() ? std::move(decoder) : nullptr;
}

}  // namespace chimewerk
