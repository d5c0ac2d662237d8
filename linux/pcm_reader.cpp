#include "linux/pcm_reader.h"

#include <samplerate.h>

#include <algorithm>

#include "linux/stereo_mix.h"

namespace chimewerk {

namespace {

constexpr std::size_t kDecodeFrames = 4096;

double ratioFrom(int rate) {
    return static_cast<double>(kOutputRate) / rate;
}

}  // namespace

void PcmReader::FreeConverter::operator()(SRC_STATE_tag* converter) const {
    src_delete(converter);
}

std::unique_ptr<PcmReader> PcmReader::over(std::unique_ptr<Decoder> decoder) {
    const int rate = decoder->rate();
    std::unique_ptr<PcmReader> reader(new PcmReader(std::move(decoder)));
    if (rate != kOutputRate) {
        if (src_is_valid_ratio(ratioFrom(rate)) == 0) {
            return nullptr;
        }
        int error = 0;
        reader->converter_.reset(src_new(SRC_SINC_FASTEST, kOutputChannels, &error));
        if (!reader->converter_) {
            return nullptr;
        }
    }
    return reader;
}

PcmReader::PcmReader(std::unique_ptr<Decoder> decoder) : decoder_(std::move(decoder)) {}

PcmReader::~PcmReader() = default;

std::size_t PcmReader::read(std::span<float> stereo) {
    return converter_ ? readConverted(stereo) : readAtOwnRate(stereo);
}

std::size_t PcmReader::readAtOwnRate(std::span<float> stereo) {
    const auto channels = static_cast<std::size_t>(decoder_->channels());
    decoded_.resize(kDecodeFrames * channels);
    const std::size_t wanted = stereo.size() / kOutputChannels;
    std::size_t done = 0;
    while (done < wanted && !ended_) {
        const std::size_t asked = std::min(wanted - done, kDecodeFrames);
        const std::span block = std::span(decoded_).first(asked * channels);
        const std::size_t got = decoder_->read(block);
        mixToStereo(block.first(got * channels), decoder_->channels(),
                    stereo.subspan(done * kOutputChannels));
        done += got;
        ended_ = got < asked;
    }
    return done;
}

std::size_t PcmReader::readConverted(std::span<float> stereo) {
    std::size_t done = 0;
    const std::size_t wanted = stereo.size() / kOutputChannels;
    while (done < wanted) {
        if (used_ == waiting_.size() && !ended_) {
            waiting_.resize(kDecodeFrames * kOutputChannels);
            waiting_.resize(readAtOwnRate(waiting_) * kOutputChannels);
            used_ = 0;
        }
        SRC_DATA step{};
        step.data_in = waiting_.data() + used_;
        step.input_frames = static_cast<long>((waiting_.size() - used_) / kOutputChannels);
        step.data_out = stereo.data() + done * kOutputChannels;
        step.output_frames = static_cast<long>(wanted - done);
        step.src_ratio = ratioFrom(decoder_->rate());
        step.end_of_input = ended_ ? 1 : 0;
        if (src_process(converter_.get(), &step) != 0) {
            break;
        }
        used_ += static_cast<std::size_t>(step.input_frames_used) * kOutputChannels;
        done += static_cast<std::size_t>(step.output_frames_gen);
        if (ended_ && step.output_frames_gen == 0 && used_ == waiting_.size()) {
            break;
        }
    }
    return done;
}

}  // namespace chimewerk
