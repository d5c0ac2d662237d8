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
        const auto found = folders_.find(folder);
        return found == folders_.end()
                   ? std::vector<std::string>()
                   : std::vector<std::string>(found->second.begin(), found->second.end());
    }
    std::unique_ptr<Stream> watch(const std::string& folder,
                                  std::function<void()> onChange) override {
        note("folders");
        return canWatch ? std::make_unique<FakeStream>(*this, folder, std::move(onChange))
                        : nullptr;
    }

    void add(const std::string& folder, const std::string& name) {
        folders_[folder].insert(name);
        notify(folder);
    }
    void remove(const std::string& folder, const std::string& name) {
        folders_[folder].erase(name);
        notify(folder);
    }
    /// Makes the folder unlistable and returns its contents.
    std::set<std::string> makeUnlistable(const std::string& folder) {
        auto contents = std::move(folders_.extract(folder).mapped());
        notify(folder);
        return contents;
    }
    void putBack(const std::string& folder, std::set<std::string> contents) {
        folders_[folder] = std::move(contents);
        notify(folder);
    }
    std::size_t streams() const { return streams_.size(); }

private:
    struct FakeStream final : Stream {
        FakeStream(FakeFolderSource& owner, std::string watched, std::function<void()> call)
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
        const std::function<void()> onChange;
    };

    void notify(const std::string& folder) {
        for (const FakeStream* const stream : streams_) {
            if (stream->folder == folder) {
                stream->onChange();
            }
        }
    }

    std::map<std::string, std::set<std::string>> folders_;
    std::set<const FakeStream*> streams_;
};

}  // namespace chimewerk
