// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/decoder.h"

#include "linux/decoding/m4a_module.h"
#include "linux/decoding/sndfile_decoder.h"

namespace chimewerk {

namespace {

bool any(std::span<const std::byte> /*bytes*/) {
    return true;
}

/// The formats, in order: the first one that recognises the bytes opens them.
struct Format {
    bool (*recognises)(std::span<const std::byte> bytes);
    std::unique_ptr<Decoder> (*open)(M4aModule& m4a, const VisibleFile& file);
};

constexpr Format kFormats[] = {
    {M4aModule::recognises, [](M4aModule& m4a, const VisibleFile& file) { return m4a.open(file); }},
    {any, [](M4aModule&, const VisibleFile& file) { return openSndfileDecoder(file); }},
};

}  // namespace

Decoders::Decoders(const std::string& moduleFolder)
    : m4a_(std::make_unique<M4aModule>(moduleFolder + "/chimewerk-m4a.so")) {}

Decoders::~Decoders() = default;

std::unique_ptr<Decoder> Decoders::open(const VisibleFile& file) const {
    for (const Format& format : kFormats) {
        if (format.recognises(file.bytes)) {
            return format.open(*m4a_, file);
        }
    }
    return nullptr;
}

}  // namespace chimewerk
