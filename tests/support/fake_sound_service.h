// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/sound_service.h"

namespace chimewerk {

/// Files and alert sounds that exist by name only, and a record of the sounds played. A path with a
/// length can be decoded; one without exists but cannot be decoded.
class FakeSoundService final : public SoundService, public FileSystem {
public:
    /// A sound that was started.
    struct Play {
        /// The path, or the name of the alert sound.
        std::string source;
        float volume;
        bool operator==(const Play&) const = default;
    };

    void addFile(const std::string& path, Seconds length = Seconds{0.1}) {
        lengths_[path] = length;
    }
    void addUndecodableFile(const std::string& path) { undecodable_.insert(path); }
    void removeFile(const std::string& path) { lengths_.erase(path); }
    void addNamedSound(const std::string& name) { named_.insert(name); }

    const std::vector<Play>& plays() const { return plays_; }
    /// The paths looked up in the file system, in order.
    const std::vector<std::string>& lookups() const { return lookups_; }

    bool fileExists(const std::string& path) const override {
        lookups_.push_back(path);
        return lengths_.contains(path) || undecodable_.contains(path);
    }
    std::shared_ptr<Sound> soundFromFile(const std::string& path) override {
        const auto found = lengths_.find(path);
        return found == lengths_.end() ? nullptr
                                       : std::make_shared<FakeSound>(*this, path, found->second);
    }
    std::shared_ptr<Sound> soundNamed(std::string_view name) override {
        const auto found = named_.find(name);
        return found == named_.end() ? nullptr
                                     : std::make_shared<FakeSound>(*this, *found, Seconds{0.5});
    }

private:
    class FakeSound final : public Sound {
    public:
        FakeSound(FakeSoundService& service, std::string source, Seconds length)
            : service_(service), source_(std::move(source)), length_(length) {}
        void setVolume(float volume) override { volume_ = volume; }
        void play() override { service_.plays_.push_back({source_, volume_}); }
        Seconds duration() const override { return length_; }

    private:
        FakeSoundService& service_;
        const std::string source_;
        const Seconds length_;
        float volume_ = -1.0F;
    };

    std::map<std::string, Seconds> lengths_;
    std::set<std::string> undecodable_;
    std::set<std::string, std::less<>> named_;
    std::vector<Play> plays_;
    mutable std::vector<std::string> lookups_;
};

}  // namespace chimewerk
