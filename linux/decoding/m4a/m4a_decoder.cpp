// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The module that decodes M4A with FFmpeg's libraries. It has one C function, so that the program
// itself is not linked with these libraries.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "linux/decoding/decoder.h"

namespace chimewerk {

namespace {

constexpr int kIoBufferSize = 16 * 1024;

struct FreeFormat {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
};
struct FreeIo {
    void operator()(AVIOContext* io) const {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};
struct FreeCodec {
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeConverter {
    void operator()(SwrContext* converter) const { swr_free(&converter); }
};

/// The file that FFmpeg reads from, and its position in it.
struct Cursor {
    VisibleFile file;
    std::int64_t position = 0;

    std::int64_t size() const { return static_cast<std::int64_t>(file.size); }

    static int read(void* opaque, std::uint8_t* target, int count) {
        auto& cursor = *static_cast<Cursor*>(opaque);
        const std::int64_t size = std::min<std::int64_t>(
            count, static_cast<std::int64_t>(cursor.file.bytes.size()) - cursor.position);
        if (size <= 0) {
            return AVERROR_EOF;
        }
        std::memcpy(target, cursor.file.bytes.data() + cursor.position,
                    static_cast<std::size_t>(size));
        cursor.position += size;
        return static_cast<int>(size);
    }

    static std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
        auto& cursor = *static_cast<Cursor*>(opaque);
        if ((whence & AVSEEK_SIZE) != 0) {
            return cursor.size();
        }
        const std::int64_t base = whence == SEEK_CUR   ? cursor.position
                                  : whence == SEEK_END ? cursor.size()
                                                       : 0;
        cursor.position = std::clamp<std::int64_t>(base + offset, 0, cursor.size());
        return cursor.position;
    }
};

class M4aDecoder final : public Decoder {
public:
    explicit M4aDecoder(const VisibleFile& file) : cursor_{file} {}

    /// Returns false if the file holds no sound that can be decoded.
    bool open() { return openContainer() && openCodec() && openConverter(); }

    int rate() const override { return codec_->sample_rate; }
    int channels() const override { return codec_->ch_layout.nb_channels; }
    double seconds() const override {
        return std::max<double>(0.0, static_cast<double>(format_->duration)) / AV_TIME_BASE;
    }

    std::size_t read(std::span<float> samples) override {
        const auto width = static_cast<std::size_t>(channels());
        std::size_t written = 0;
        while (samples.size() - written >= width) {
            if (taken_ == ready_.size() && !decodeMore()) {
                break;
            }
            const std::size_t room = (samples.size() - written) / width * width;
            const std::size_t count = std::min(room, ready_.size() - taken_);
            std::ranges::copy(std::span(ready_).subspan(taken_, count),
                              samples.subspan(written).begin());
            taken_ += count;
            written += count;
        }
        return written / width;
    }

private:
    bool openContainer() {
        auto* const buffer = static_cast<unsigned char*>(av_malloc(kIoBufferSize));
        io_.reset(avio_alloc_context(buffer, kIoBufferSize, 0, &cursor_, Cursor::read, nullptr,
                                     Cursor::seek));
        AVFormatContext* format = avformat_alloc_context();
        if (!io_ || format == nullptr) {
            avformat_free_context(format);
            return false;
        }
        format->pb = io_.get();
        if (avformat_open_input(&format, nullptr, av_find_input_format("mov"), nullptr) < 0) {
            return false;  // On failure the function frees the context.
        }
        format_.reset(format);
        return avformat_find_stream_info(format, nullptr) >= 0;
    }

    bool openCodec() {
        const AVCodec* decoder = nullptr;
        stream_ = av_find_best_stream(format_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
        if (stream_ < 0 || decoder == nullptr) {
            return false;
        }
        codec_.reset(avcodec_alloc_context3(decoder));
        const AVStream& stream = *format_->streams[stream_];
        if (!codec_ || avcodec_parameters_to_context(codec_.get(), stream.codecpar) < 0) {
            return false;
        }
        codec_->pkt_timebase = stream.time_base;  // To drop the encoder's priming.
        return avcodec_open2(codec_.get(), decoder, nullptr) >= 0 && rate() > 0 && channels() > 0;
    }

    bool openConverter() {
        SwrContext* converter = nullptr;
        AVChannelLayout* const layout = &codec_->ch_layout;
        if (swr_alloc_set_opts2(&converter, layout, AV_SAMPLE_FMT_FLT, rate(), layout,
                                codec_->sample_fmt, rate(), 0, nullptr) < 0) {
            return false;
        }
        converter_.reset(converter);
        return frame_ && packet_ && swr_init(converter) >= 0;
    }

    /// Fills `ready_` with the next frames. Returns false at the end of the sound and where it
    /// is damaged.
    bool decodeMore() {
        while (true) {
            const int received = avcodec_receive_frame(codec_.get(), frame_.get());
            if (received >= 0) {
                return convert();
            }
            if (received != AVERROR(EAGAIN) || !feed()) {
                return false;
            }
        }
    }

    /// Sends the next packet to the decoder, or the mark of the end after the last one.
    bool feed() {
        while (av_read_frame(format_.get(), packet_.get()) >= 0) {
            const bool ours = packet_->stream_index == stream_;
            const int sent = ours ? avcodec_send_packet(codec_.get(), packet_.get()) : 0;
            av_packet_unref(packet_.get());
            if (sent < 0) {
                return false;
            }
            if (ours) {
                return true;
            }
        }
        return avcodec_send_packet(codec_.get(), nullptr) >= 0;
    }

    bool convert() {
        if (frame_->ch_layout.nb_channels != channels() || frame_->sample_rate != rate() ||
            frame_->format != codec_->sample_fmt) {
            return false;  // A sound that changes its format ends there.
        }
        ready_.resize(static_cast<std::size_t>(frame_->nb_samples) *
                      static_cast<std::size_t>(channels()));
        taken_ = 0;
        auto* target = reinterpret_cast<std::uint8_t*>(ready_.data());
        const auto* const* const source = frame_->extended_data;
        const int frames =
            swr_convert(converter_.get(), &target, frame_->nb_samples,
                        const_cast<const std::uint8_t**>(source), frame_->nb_samples);
        ready_.resize(static_cast<std::size_t>(std::max(frames, 0)) *
                      static_cast<std::size_t>(channels()));
        return frames >= 0;
    }

    Cursor cursor_;
    std::unique_ptr<AVIOContext, FreeIo> io_;
    std::unique_ptr<AVFormatContext, FreeFormat> format_;
    std::unique_ptr<AVCodecContext, FreeCodec> codec_;
    std::unique_ptr<SwrContext, FreeConverter> converter_;
    std::unique_ptr<AVFrame, FreeFrame> frame_{av_frame_alloc()};
    std::unique_ptr<AVPacket, FreePacket> packet_{av_packet_alloc()};
    int stream_ = -1;
    std::vector<float> ready_;
    std::size_t taken_ = 0;
};

}  // namespace

/// The module's only function: returns a decoder for the file, whose bytes must outlive it,
/// or null.
extern "C" __attribute__((visibility("default"))) Decoder* chimewerkOpenM4a(
    const VisibleFile* file);

extern "C" Decoder* chimewerkOpenM4a(const VisibleFile* file) {
    av_log_set_level(AV_LOG_QUIET);
    auto decoder = std::make_unique<M4aDecoder>(*file);
    return decoder->open() ? decoder.release() : nullptr;
}

}  // namespace chimewerk
