// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Any file may be chosen as a sound, and it may be cut while it plays.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "linux/base/module.h"
#include "linux/decoding/sound_file.h"
#include "linux/decoding/stereo_mix.h"

using namespace chimewerk;

namespace {

constexpr int kParts = 3;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void requireAudible(std::span<const float> samples) {
    require(std::ranges::all_of(samples, [](float s) { return std::fabs(s) < 10 * kLoudest; }));
}

/// Without the module every M4A would only be refused.
bool hasM4aModule() {
    Module module(CHIMEWERK_MODULE_DIR "/chimewerk-m4a.so");
    return module.function<void (*)()>(CHIMEWERK_M4A_FUNCTION_NAME) != nullptr;
}

}  // namespace

// libsndfile forgets a little memory with each damaged Ogg that it refuses.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libvorbis.so\nleak:libogg.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Decoders decoders{CHIMEWERK_MODULE_DIR};
    static const bool canReadM4a = hasM4aModule();
    require(canReadM4a);
    static const int file = memfd_create("sound", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    require(ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
    const auto sound = SoundFile::open(decoders, path);
    if (!sound) {
        return 0;
    }
    require(!sound->head().empty() && sound->seconds() >= 0 && sound->seconds() <= 86400);
    requireAudible(sound->head());
    std::vector<float> part(kOutputRate);
    for (int i = 0; i < kParts; ++i) {
        const std::size_t samples = sound->readRest(part) * kOutputChannels;
        require(samples <= part.size());
        requireAudible(std::span(part).first(samples));
        if (samples < part.size()) {
            require(sound->readRest(part) == 0);
            break;
        }
        require(!sound->headIsAll());
        if (i == static_cast<int>(size % kParts)) {
            require(ftruncate(file, static_cast<off_t>(size / 2)) == 0);
        }
    }
    return 0;
}
