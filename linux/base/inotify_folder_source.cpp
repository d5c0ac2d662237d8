// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/inotify_folder_source.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "linux/base/folder_watch.h"

namespace chimewerk {

namespace {

class InotifyStream final : public FolderSource::Stream {
public:
    InotifyStream(EpollMainQueue& queue, const std::string& folder, std::function<void()> onChange)
        : watch_(queue, folder,
                 [onChange = std::move(onChange)](std::string_view) { onChange(); }) {}

private:
    FolderWatch watch_;
};

}  // namespace

std::vector<std::string> InotifyFolderSource::list(const std::string& folder) const {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    // After an error the list would be incomplete, so return none of it.
    return error ? std::vector<std::string>() : names;
}

std::unique_ptr<FolderSource::Stream> InotifyFolderSource::watch(const std::string& folder,
                                                                 std::function<void()> onChange) {
    if (!folder.starts_with('/')) {
        return nullptr;
    }
    return std::make_unique<InotifyStream>(queue_, folder, std::move(onChange));
}

}  // namespace chimewerk
