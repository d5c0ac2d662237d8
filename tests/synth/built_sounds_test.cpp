#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "synth/faults.h"
#include "synth/levels.h"
#include "synth/sound_set.h"
#include "synth/spectrum.h"

namespace chimewerk::sounds {
namespace {

SoundFile fileOf(const std::string& theme, const std::string& name) {
    return {theme, name, "t_" + theme + "_" + name + ".wav"};
}

std::set<std::string> themes() {
    std::set<std::string> names;
    for (const SoundFile& file : everySoundFile()) {
        if (file.path.starts_with("t_")) {
            names.insert(file.group);
        }
    }
    return names;
}

// The loudness of each sound, by group: of the events (or alerts) in `events`, of the key sounds in `keys`.
struct Loudnesses {
    std::vector<double> events;
    std::vector<double> keys;
};

std::map<std::string, Loudnesses> loudnesses() {
    std::map<std::string, Loudnesses> groups;
    for (const SoundFile& file : everySoundFile()) {
        auto& group = groups[file.group];
        (file.isKey() ? group.keys : group.events).push_back(loudness(samplesOf(file)));
    }
    return groups;
}

double mean(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

TEST(TheBuiltSounds, AreThoseOfTheCatalogueAndNoOthersAndSmall) {
    std::set<std::string> expected;
    for (const SoundFile& file : everySoundFile()) {
        expected.insert(file.path);
    }
    EXPECT_EQ(expected.size(), 6U * 21U + 3U + 8U);

    std::set<std::string> found;
    std::uintmax_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(soundsFolder())) {
        if (entry.is_regular_file()) {
            found.insert(std::filesystem::relative(entry.path(), soundsFolder()).string());
            bytes += entry.file_size();
        }
    }
    EXPECT_THAT(found, testing::ContainerEq(expected));
    EXPECT_LT(bytes, 8'000'000U);
}

TEST(TheBuiltSounds, AreEachWithoutFault) {
    for (const SoundFile& file : everySoundFile()) {
        const Kind kind = file.isKey() ? Kind::key : Kind::event;
        EXPECT_EQ(faultsOf(measureLevels(samplesOf(file)), kind), "") << file.path;
    }
}

TEST(TheBuiltSounds, AreEquallyLoudWithinAndAcrossThemesAndTheirKeysQuieter) {
    const auto groups = loudnesses();
    const double reference = mean(groups.at("classic").events);
    for (const auto& [name, group] : groups) {
        if (!group.events.empty()) {
            const auto [quietest, loudest] =
                std::minmax_element(group.events.begin(), group.events.end());
            EXPECT_LE(*loudest - *quietest, 2.0) << name;
            EXPECT_NEAR(mean(group.events), reference, 0.5) << name;
        }
        for (const double key : group.keys) {
            EXPECT_GE(reference - key, 6.0) << name;
            EXPECT_LE(reference - key, 10.0) << name;
        }
    }
}

TEST(TheBuiltSounds, AreEachUnlikeAllOthers) {
    const std::vector<SoundFile> files = everySoundFile();
    std::vector<Portrait> portraits;
    portraits.reserve(files.size());
    for (const SoundFile& file : files) {
        portraits.emplace_back(samplesOf(file));
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const double needed = files[i].group == files[j].group ? kUnlikeWithinATheme : kUnlike;
            EXPECT_GE(portraits[i].distanceTo(portraits[j]), needed)
                << files[i].path << " and " << files[j].path;
        }
    }
}

TEST(TheBuiltSounds, RiseAndFallAsTheirEventsDo) {
    for (const std::string& theme : themes()) {
        for (const Opposites& pair : opposites()) {
            const double rise = trend(samplesOf(fileOf(theme, pair.rising)));
            const double fall = trend(samplesOf(fileOf(theme, pair.falling)));
            // A minor third; the ear is sure of it even in a short sound.
            EXPECT_GE(rise, 0.17) << theme << ' ' << pair.rising;
            EXPECT_LE(fall, -0.25) << theme << ' ' << pair.falling;
        }
    }
}

TEST(TheBuiltSounds, AreHeardFromTheSmallLoudspeakersOfALaptop) {
    for (const SoundFile& file : everySoundFile()) {
        EXPECT_GE(shareAbove(300.0, samplesOf(file)), 0.15) << file.path;
    }
}

TEST(TheBuiltSounds, WarnInSeveralStrokesWithoutBeingShrill) {
    for (const std::string& theme : themes()) {
        const Samples alarm = samplesOf(fileOf(theme, "battery_low"));
        EXPECT_GE(Portrait(alarm).strokes(), 4) << theme;
        EXPECT_LE(shareAbove(4000.0, alarm), 0.10) << theme;
    }
}

TEST(TheBuiltSounds, LetKeysBeTypedFifteenTimesASecond) {
    for (const SoundFile& file : everySoundFile()) {
        if (file.name == "key_click") {
            const Samples samples = samplesOf(file);
            const auto next =
                samples.begin() +
                std::min<std::ptrdiff_t>(3200, static_cast<std::ptrdiff_t>(samples.size()));
            const double late = std::inner_product(next, samples.end(), next, 0.0);
            const double all =
                std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
            EXPECT_LE(late, 0.01 * all) << file.path;
        }
    }
}

}  // namespace
}  // namespace chimewerk::sounds
