// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <utility>

#include "platform/sound_folder.h"

namespace chimewerk {

/// A sound folder in which the test finishes the copies.
class FakeSoundFolder final : public SoundFolder {
public:
    std::unique_ptr<Addition> add(const std::string& file, Done done) override {
        chosen = file;
        done_ = std::move(done);
        return std::make_unique<FakeAddition>(*this);
    }

    bool busy() const { return done_ != nullptr; }
    void finish(const Outcome& outcome) { std::exchange(done_, nullptr)(outcome); }

    /// The last file that was added.
    std::string chosen;
    /// Number of cancelled copies.
    int givenUp = 0;

private:
    struct FakeAddition final : Addition {
        explicit FakeAddition(FakeSoundFolder& owner) : folder(owner) {}
        FakeAddition(const FakeAddition&) = delete;
        FakeAddition& operator=(const FakeAddition&) = delete;
        ~FakeAddition() override { folder.givenUp += std::exchange(folder.done_, nullptr) ? 1 : 0; }

        FakeSoundFolder& folder;
    };

    Done done_;
};

}  // namespace chimewerk
