// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/inotify_folder_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <utility>

#include "linux/base/file_reading.h"
#include "linux/base/folder_watch.h"

namespace chimewerk {

namespace {

class InotifyStream final : public FolderSource::Stream {
public:
    InotifyStream(EpollMainQueue& queue, const std::string& folder, FolderSource::Change onChange)
        : watch_(queue, folder, std::move(onChange)) {}

private:
    FolderWatch watch_;
};

}  // namespace

std::vector<std::string> InotifyFolderSource::list(const std::string& folder) const {
    return namesIn(folder);
}

std::optional<FileIdentity> InotifyFolderSource::identify(const std::string& folder,
                                                          const std::string& name) const {
    struct statx status {};
    if (statx(AT_FDCWD, (folder + "/" + name).c_str(), AT_SYMLINK_NOFOLLOW, STATX_INO | STATX_BTIME,
              &status) != 0) {
        return std::nullopt;
    }
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    const bool hasBirth = (status.stx_mask & STATX_BTIME) != 0;
    return FileIdentity{
        .device = makedev(status.stx_dev_major, status.stx_dev_minor),
        .inode = status.stx_ino,
        .birthNanoseconds =
            hasBirth ? status.stx_btime.tv_sec * kNanoseconds + status.stx_btime.tv_nsec : 0};
}

std::unique_ptr<FolderSource::Stream> InotifyFolderSource::watch(const std::string& folder,
                                                                 Change onChange) {
    if (!folder.starts_with('/')) {
        return nullptr;
    }
    return std::make_unique<InotifyStream>(queue_, folder, std::move(onChange));
}

}  // namespace chimewerk
