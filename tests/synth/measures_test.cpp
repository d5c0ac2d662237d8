#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <string>

#include "synth/faults.h"
#include "synth/levels.h"
#include "synth/sound_set.h"
#include "synth/spectrum.h"

namespace chimewerk::sounds {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

// A sine whose frequency moves evenly from one pitch to another.
Samples sweep(double fromHertz, double toHertz, double seconds, double amplitude) {
    Samples samples;
    double phase = 0.0;
    const auto count = static_cast<int>(seconds * kSampleRate);
    for (int i = 0; i < count; ++i) {
        samples.push_back(amplitude * std::sin(kTurn * phase));
        phase +=
            fromHertz * std::pow(toHertz / fromHertz, static_cast<double>(i) / count) / kSampleRate;
    }
    return samples;
}

// A sound without fault that ends a second after it began.
Samples goodSound() {
    Samples samples = sweep(500, 500, 1.0, 0.5);
    double time = 0.0;
    for (double& sample : samples) {
        sample *= std::min(1.0, time / 0.002) * std::exp(-6.0 * time);
        time += 1.0 / kSampleRate;
    }
    return samples;
}

Samples mapped(Samples samples, const std::function<double(double)>& change) {
    std::transform(samples.begin(), samples.end(), samples.begin(), change);
    return samples;
}

Samples part(const Samples& samples, double fromSeconds, double toSeconds) {
    return {samples.begin() + static_cast<std::ptrdiff_t>(fromSeconds * kSampleRate),
            samples.begin() + static_cast<std::ptrdiff_t>(toSeconds * kSampleRate)};
}

Samples later(const Samples& samples, double seconds) {
    Samples result(static_cast<std::size_t>(seconds * kSampleRate), 0.0);
    result.insert(result.end(), samples.begin(), samples.end());
    return result;
}

// Played faster and so higher.
Samples higher(const Samples& samples, double ratio) {
    Samples result;
    for (double at = 0.0; at + 1.0 < static_cast<double>(samples.size()); at += ratio) {
        const auto index = static_cast<std::size_t>(at);
        result.push_back(std::lerp(samples[index], samples[index + 1], at - std::floor(at)));
    }
    return result;
}

TEST(TheMeasures, FindEachFaultInASoundThatWasGood) {
    const Samples good = goodSound();
    EXPECT_EQ(faultsOf(measureLevels(good), Kind::event), "");
    const struct {
        const char* fault;
        Samples samples;
    } cases[] = {
        {"silent", {}},
        {"silent", Samples(24000, 0.0)},
        {"silent", mapped(good, [](double x) { return 0.001 * x; })},
        {"peak above -1 dBFS", mapped(good, [](double x) { return 1.9 * x; })},
        {"clipped", mapped(good, [](double x) { return std::clamp(x, -0.3, 0.3); })},
        {"too short", part(good, 0.0, 0.1)},
        {"too long", later(good, 0.3)},
        {"begins late", later(good, 0.01)},
        {"clicks at its start", part(good, 0.0105, 1.0)},
        {"clicks at its end", part(good, 0.0, 0.2105)},
        {"cut", part(good, 0.0, 0.21)},
        {"off centre", mapped(good, [](double x) { return x + 0.01; })},
    };
    for (const auto& [fault, samples] : cases) {
        EXPECT_THAT(faultsOf(measureLevels(samples), Kind::event), testing::HasSubstr(fault));
    }
    EXPECT_THAT(faultsOf(measureLevels(good), Kind::key), testing::HasSubstr("too long"));
}

TEST(TheMeasures, GiveTheLoudnessThatTheStandardDefines) {
    // A full-scale sine of 997 Hz measures -3.01 LUFS in one channel, and twice the power in both.
    EXPECT_NEAR(loudness(sweep(997, 997, 1.0, 1.0)), 0.0, 0.05);
    EXPECT_NEAR(loudness(sweep(997, 997, 1.0, 0.1)), -20.0, 0.05);
    // Half the window filled is half the power.
    EXPECT_NEAR(loudness(sweep(997, 997, 0.2, 1.0)), -3.0, 0.1);
    // The ear's curve: what a low tone loses and a high one gains.
    EXPECT_NEAR(loudness(sweep(40, 40, 1.0, 1.0)), -5.7, 1.0);
    EXPECT_NEAR(loudness(sweep(8000, 8000, 1.0, 1.0)), 3.3, 0.4);
}

TEST(TheMeasures, TellRisingFromFallingFromNeither) {
    EXPECT_NEAR(trend(sweep(400, 1600, 0.6, 0.5)), 4.0 / 3.0, 0.15);
    EXPECT_NEAR(trend(sweep(1600, 400, 0.6, 0.5)), -4.0 / 3.0, 0.15);
    EXPECT_NEAR(trend(sweep(700, 700, 0.6, 0.5)), 0.0, 0.02);
    EXPECT_EQ(trend({}), 0.0);
}

TEST(TheMeasures, TakeNoCopyForAnotherSound) {
    for (const SoundFile& file : everySoundFile()) {
        const Samples sound = samplesOf(file);
        const Portrait portrait(sound);
        EXPECT_LT(portrait.distanceTo(Portrait(mapped(sound, [](double x) { return 0.4 * x; }))),
                  0.01)
            << file.path;
        EXPECT_LT(portrait.distanceTo(Portrait(later(sound, 0.002))), kUnlike) << file.path;
        EXPECT_LT(portrait.distanceTo(Portrait(higher(sound, 1.015))), kUnlike) << file.path;
    }
}

TEST(TheMeasures, CountStrokesAndFindTheShareOfTheHighTones) {
    const Samples stroke = part(goodSound(), 0.0, 0.3);
    Samples three = stroke;
    three.insert(three.end(), stroke.begin(), stroke.end());
    three.insert(three.end(), stroke.begin(), stroke.end());
    EXPECT_EQ(Portrait(stroke).strokes(), 1);
    EXPECT_EQ(Portrait(three).strokes(), 3);
    EXPECT_LT(shareAbove(4000.0, sweep(1000, 1000, 0.5, 0.5)), 0.01);
    EXPECT_GT(shareAbove(4000.0, sweep(6000, 6000, 0.5, 0.5)), 0.99);
}

TEST(TheMeasures, RefuseAFileThatIsNotWhatItsHeaderSays) {
    std::vector<std::uint8_t> good = {'R',  'I',  'F', 'F', 40, 0,    0, 0, 'W', 'A',  'V', 'E',
                                      'f',  'm',  't', ' ', 16, 0,    0, 0, 1,   0,    1,   0,
                                      0x80, 0xBB, 0,   0,   0,  0x77, 1, 0, 2,   0,    16,  0,
                                      'd',  'a',  't', 'a', 4,  0,    0, 0, 0,   0x40, 0,   0xC0};
    EXPECT_EQ(decodeWav(good), (Samples{0.5, -0.5}));
    for (const std::size_t at : {0U, 4U, 8U, 20U, 22U, 25U, 34U, 36U, 40U}) {
        auto wrong = good;
        ++wrong[at];
        EXPECT_ANY_THROW(decodeWav(wrong)) << at;
    }
    good.pop_back();
    EXPECT_ANY_THROW(decodeWav(good));
    EXPECT_ANY_THROW(readWav("/nonexistent.wav"));
}

}  // namespace
}  // namespace chimewerk::sounds
