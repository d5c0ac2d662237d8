// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sndfile_decoder.h"

#include <sndfile.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

namespace chimewerk {

namespace {

/// The file that libsndfile reads from, and its position in it.
struct Cursor {
    VisibleFile file;
    sf_count_t position = 0;

    static Cursor& of(void* user) { return *static_cast<Cursor*>(user); }
    sf_count_t size() const { return static_cast<sf_count_t>(file.size); }
};

sf_count_t length(void* user) {
    return Cursor::of(user).size();
}

sf_count_t tell(void* user) {
    return Cursor::of(user).position;
}

sf_count_t seek(sf_count_t offset, int whence, void* user) {
    Cursor& cursor = Cursor::of(user);
    const sf_count_t base = whence == SEEK_SET   ? 0
                            : whence == SEEK_CUR ? cursor.position
                                                 : cursor.size();
    cursor.position = std::clamp<sf_count_t>(base + offset, 0, cursor.size());
    return cursor.position;
}

sf_count_t readBytes(void* target, sf_count_t count, void* user) {
    Cursor& cursor = Cursor::of(user);
    const sf_count_t visible = static_cast<sf_count_t>(cursor.file.bytes.size()) - cursor.position;
    const sf_count_t size = std::clamp<sf_count_t>(count, 0, std::max<sf_count_t>(0, visible));
    if (size > 0) {
        std::memcpy(target, cursor.file.bytes.data() + cursor.position,
                    static_cast<std::size_t>(size));
        cursor.position += size;
    }
    return size;
}

sf_count_t writeNothing(const void* /*source*/, sf_count_t /*count*/, void* /*user*/) {
    return 0;
}

struct CloseFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};

class SndfileDecoder final : public Decoder {
public:
    explicit SndfileDecoder(const VisibleFile& file) : cursor_{file} {
        static SF_VIRTUAL_IO io{length, seek, readBytes, writeNothing, tell};
        file_.reset(sf_open_virtual(&io, SFM_READ, &info_, &cursor_));
    }

    bool isOpen() const { return file_ && info_.channels > 0 && info_.samplerate > 0; }

    int rate() const override { return info_.samplerate; }
    int channels() const override { return info_.channels; }
    double seconds() const override {
        // For a file of unknown length the number of frames is the largest possible one.
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
    Cursor cursor_;
    SF_INFO info_{};
    std::unique_ptr<SNDFILE, CloseFile> file_;
};

}  // namespace

std::unique_ptr<Decoder> openSndfileDecoder(const VisibleFile& file) {
    auto decoder = std::make_unique<SndfileDecoder>(file);
    return decoder->isOpen() ? std::move(decoder) : nullptr;
}

}  // namespace chimewerk
