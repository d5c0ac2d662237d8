// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <optional>
#include <set>
#include <utility>

#include "monitors/screenshot_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// Folders that hold only names. Each change is reported at once.
class FakeFolderSource final : public FolderSource, public Noting {
public:
    bool canWatch = true;
    mutable int listings = 0;

    std::vector<std::string> list(const std::string& folder) const override {
        ++listings;
        std::vector<std::string> names;
        if (const auto found = folders_.find(folder); found != folders_.end()) {
            for (const auto& [name, file] : found->second) {
                names.push_back(name);
            }
        }
        return names;
    }
    std::optional<FileIdentity> identify(const std::string& folder,
                                         const std::string& name) const override {
        const auto found = folders_.find(folder);
        if (found == folders_.end() || !found->second.contains(name)) {
            return std::nullopt;
        }
        return FileIdentity{.device = 1, .inode = found->second.at(name), .birthNanoseconds = 0};
    }
    std::unique_ptr<Stream> watch(const std::string& folder, Change onChange) override {
        note("folders");
        return canWatch ? std::make_unique<FakeStream>(*this, folder, std::move(onChange))
                        : nullptr;
    }

    void add(const std::string& folder, const std::string& name) {
        folders_[folder][name] = ++files_;
        notify(folder, name);
    }
    void remove(const std::string& folder, const std::string& name) {
        folders_[folder].erase(name);
        notify(folder, name);
    }
    void move(const std::string& from, const std::string& to, const std::string& name) {
        folders_[to][name] = folders_[from].extract(name).mapped();
        notify(from, name);
        notify(to, name);
    }
    /// Makes the folder unlistable and returns its contents.
    std::map<std::string, std::uint64_t> makeUnlistable(const std::string& folder) {
        auto contents = std::move(folders_.extract(folder).mapped());
        notify(folder, "");
        return contents;
    }
    void putBack(const std::string& folder, std::map<std::string, std::uint64_t> contents) {
        folders_[folder] = std::move(contents);
        notify(folder, "");
    }
    std::size_t streams() const { return streams_.size(); }

private:
    struct FakeStream final : Stream {
        FakeStream(FakeFolderSource& owner, std::string watched, Change call)
            : source(owner), folder(std::move(watched)), onChange(std::move(call)) {
            source.streams_.insert(this);
        }
        FakeStream(const FakeStream&) = delete;
        FakeStream& operator=(const FakeStream&) = delete;
        ~FakeStream() override {
            source.note("-folders");
            source.streams_.erase(this);
        }

        FakeFolderSource& source;
        const std::string folder;
        const Change onChange;
    };

    void notify(const std::string& folder, const std::string& name) {
        for (const FakeStream* const stream : streams_) {
            if (stream->folder == folder) {
                stream->onChange(name);
            }
        }
    }

    /// The number of each file, by folder and name.
    std::map<std::string, std::map<std::string, std::uint64_t>> folders_;
    std::uint64_t files_ = 0;
    std::set<const FakeStream*> streams_;
};

}  // namespace chimewerk
