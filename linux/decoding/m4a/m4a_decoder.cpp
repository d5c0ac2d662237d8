// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The module that decodes M4A with FFmpeg's libraries. It exports one C function, so that the
// program itself is not linked with these libraries.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <cerrno>
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

/// The only decoders that may be used; the file chooses among them.
constexpr const char* kDecoders = "aac,alac,mp3float";
/// The largest permitted block of memory; a sound of some eight hours needs this much for
/// its index.
constexpr std::size_t kLargestBlock = std::size_t{32} << 20U;
/// After this many packets without a frame, the sound counts as ended.
constexpr int kMostEmptyPackets = 1000;

ByteStream& streamOf(void* file) {
    return *static_cast<ByteStream*>(file);
}

int readBytes(void* file, std::uint8_t* target, int count) {
    const auto size = static_cast<std::size_t>(std::max(count, 0));
    const std::size_t got = streamOf(file).read(std::as_writable_bytes(std::span(target, size)));
    return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

std::int64_t seek(void* file, std::int64_t offset, int whence) {
    return (whence & AVSEEK_SIZE) != 0 ? streamOf(file).size()
                                       : streamOf(file).seek(offset, whence & ~AVSEEK_FORCE);
}

int refuseToOpen(AVFormatContext* /*format*/, AVIOContext** /*io*/, const char* /*url*/,
                 int /*flags*/, AVDictionary** /*options*/) {
    return AVERROR(EPERM);
}

/// The format of the samples.
struct Form {
    int rate;
    int channels;
    int sampleFormat;
    bool operator==(const Form&) const = default;
};

Form formOf(const AVFrame& frame) {
    return {.rate = frame.sample_rate,
            .channels = frame.ch_layout.nb_channels,
            .sampleFormat = frame.format};
}

class M4aDecoder final : public Decoder {
public:
    /// Returns false if the file holds no sound that can be decoded.
    bool open(ByteStream& file) {
        return frame_ && packet_ && openContainer(file) && openCodec() && decodeFrame() &&
               openConverter();
    }

    int rate() const override { return form_.rate; }
    int channels() const override { return form_.channels; }
    double seconds() const override {
        const AVStream& stream = *format_->streams[stream_];
        return static_cast<double>(stream.duration) * av_q2d(stream.time_base);
    }

    std::size_t read(std::span<float> samples) override {
        const auto width = static_cast<std::size_t>(form_.channels);
        const std::size_t wanted = samples.size() / width;
        std::size_t done = 0;
        while (done < wanted && (taken_ < frame_->nb_samples || decodeNextFrame())) {
            const int frames = static_cast<int>(std::min<std::size_t>(
                wanted - done, static_cast<std::size_t>(frame_->nb_samples - taken_)));
            if (!take(frames, samples.data() + done * width)) {
                break;
            }
            done += static_cast<std::size_t>(frames);
        }
        return done;
    }

private:
    bool openContainer(ByteStream& file) {
        auto* const buffer = static_cast<unsigned char*>(av_malloc(kIoBufferSize));
        io_.reset(avio_alloc_context(buffer, kIoBufferSize, 0, &file, readBytes, nullptr, seek));
        AVFormatContext* format = avformat_alloc_context();
        if (!io_ || format == nullptr) {
            avformat_free_context(format);
            return false;
        }
        format->pb = io_.get();
        format->io_open = refuseToOpen;
        format->codec_whitelist = av_strdup(kDecoders);
        AVDictionary* options = nullptr;
        av_dict_set(&options, "ignore_chapters", "1", 0);
        const int opened =
            avformat_open_input(&format, nullptr, av_find_input_format("mov"), &options);
        av_dict_free(&options);
        if (opened < 0) {
            return false;  // The function has freed the context.
        }
        format_.reset(format);
        return true;
    }

    /// Opens the decoder of the first sound track and discards the other tracks. Does not probe
    /// them: the header's statements about the samples do not count.
    bool openCodec() {
        const AVCodec* decoder = nullptr;
        for (unsigned i = 0; i < format_->nb_streams; ++i) {
            AVStream& stream = *format_->streams[i];
            const AVCodecID codec = stream.codecpar->codec_id;
            if (decoder == nullptr && (codec == AV_CODEC_ID_AAC || codec == AV_CODEC_ID_ALAC ||
                                       codec == AV_CODEC_ID_MP3)) {
                decoder = avcodec_find_decoder(codec);
                stream_ = static_cast<int>(i);
            } else {
                stream.discard = AVDISCARD_ALL;
            }
            av_packet_unref(&stream.attached_pic);
        }
        codec_.reset(decoder == nullptr ? nullptr : avcodec_alloc_context3(decoder));
        if (!codec_) {
            return false;
        }
        const AVStream& stream = *format_->streams[stream_];
        if (avcodec_parameters_to_context(codec_.get(), stream.codecpar) < 0) {
            return false;
        }
        codec_->codec_whitelist = av_strdup(kDecoders);
        codec_->pkt_timebase = stream.time_base;  // Needed to drop the encoder's priming.
        return avcodec_open2(codec_.get(), decoder, nullptr) >= 0;
    }

    /// Stores the form of the first frame and opens a converter for it.
    bool openConverter() {
        form_ = formOf(*frame_);
        const auto format = static_cast<AVSampleFormat>(form_.sampleFormat);
        AVChannelLayout* const layout = &frame_->ch_layout;
        SwrContext* converter = nullptr;
        if (form_.rate <= 0 || form_.channels <= 0 || av_sample_fmt_is_planar(format) == 0 ||
            swr_alloc_set_opts2(&converter, layout, AV_SAMPLE_FMT_FLT, form_.rate, layout, format,
                                form_.rate, 0, nullptr) < 0) {
            return false;
        }
        converter_.reset(converter);
        planes_.resize(static_cast<std::size_t>(form_.channels));
        return swr_init(converter) >= 0;
    }

    /// Decodes the next frame. Returns false at the end of the sound, where it is damaged, or where
    /// its form changes.
    bool decodeNextFrame() { return decodeFrame() && formOf(*frame_) == form_; }

    bool decodeFrame() {
        taken_ = 0;
        for (int packets = 0; packets < kMostEmptyPackets; ++packets) {
            const int received = avcodec_receive_frame(codec_.get(), frame_.get());
            if (received >= 0 && frame_->nb_samples > 0) {
                return true;
            }
            if ((received < 0 && received != AVERROR(EAGAIN)) || !feed()) {
                return false;
            }
        }
        return false;
    }

    /// Sends the next packet to the decoder; after the last one, signals the end.
    bool feed() {
        while (av_read_frame(format_.get(), packet_.get()) >= 0) {
            const bool ours = packet_->stream_index == stream_;
            const int sent = ours ? avcodec_send_packet(codec_.get(), packet_.get()) : 0;
            av_packet_unref(packet_.get());
            if (ours) {
                return sent >= 0;
            }
        }
        return avcodec_send_packet(codec_.get(), nullptr) >= 0;
    }

    /// Writes the next samples of the frame to `target`, interleaved.
    bool take(int frames, float* target) {
        const int size = av_get_bytes_per_sample(static_cast<AVSampleFormat>(form_.sampleFormat));
        for (std::size_t i = 0; i < planes_.size(); ++i) {
            planes_[i] = frame_->extended_data[i] + static_cast<std::ptrdiff_t>(taken_) * size;
        }
        taken_ += frames;
        auto* bytes = reinterpret_cast<std::uint8_t*>(target);
        return swr_convert(converter_.get(), &bytes, frames, planes_.data(), frames) == frames;
    }

    std::unique_ptr<AVIOContext, FreeIo> io_;
    std::unique_ptr<AVFormatContext, FreeFormat> format_;
    std::unique_ptr<AVCodecContext, FreeCodec> codec_;
    std::unique_ptr<SwrContext, FreeConverter> converter_;
    std::unique_ptr<AVFrame, FreeFrame> frame_{av_frame_alloc()};
    std::unique_ptr<AVPacket, FreePacket> packet_{av_packet_alloc()};
    int stream_ = -1;
    Form form_{};
    std::vector<const std::uint8_t*> planes_;  // The frame's planes, from the next sample.
    // The number of samples already taken from the frame.
    int taken_ = 0;
};

}  // namespace

/// The module's only function: returns a decoder for the file, which must outlive it, or null.
extern "C" Decoder* CHIMEWERK_M4A_FUNCTION(ByteStream* file);

extern "C" Decoder* CHIMEWERK_M4A_FUNCTION(ByteStream* file) {
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(kLargestBlock);
    auto decoder = std::make_unique<M4aDecoder>();
    return decoder->open(*file) ? decoder.release() : nullptr;
}

}  // namespace chimewerk
