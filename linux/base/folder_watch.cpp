// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/folder_watch.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

namespace chimewerk {

namespace {

constexpr std::uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
/// After these events the path may no longer name the watched folder.
constexpr std::uint32_t kGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT;

}  // namespace

FolderWatch::FolderWatch(EpollMainQueue& queue, std::string path, Notice notice, Report report,
                         Seconds interval)
    : queue_(queue),
      path_(std::move(path)),
      notice_(std::move(notice)),
      // IN_MASK_ADD because this folder and the one above may be the same (a link to ".").
      mask_(kNames | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD |
            (report == Report::namesAndPermissions ? IN_ATTRIB : 0)),
      retry_(queue, interval, [this] { tryAgain(); }) {
    attach();
}

int FolderWatch::add(const std::string& folder) const {
    return inotify_add_watch(inotify_.get(), folder.c_str(), mask_);
}

/// Watches the folder that the path names now. Uses a new inotify instance each time, which
/// discards the events of the old one.
void FolderWatch::attach() {
    watch_ = nullptr;
    inotify_ = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    folder_ = above_ = -1;
    if (inotify_) {
        watch_ = queue_.watch(inotify_.get(), [this] { read(); });
        watchNearestAbove();
        // Added after the folder above, so that the folder cannot appear unnoticed in between.
        folder_ = add(path_);
    }
    if (!watch_ || (folder_ < 0 && needsPolling())) {
        retry_.schedule();
    }
}

void FolderWatch::watchNearestAbove() {
    pathAbove_ = path_;
    while (above_ < 0 && pathAbove_.size() > 1) {
        const std::size_t slash = pathAbove_.rfind('/');
        next_ = pathAbove_.substr(slash + 1);
        pathAbove_.resize(slash == 0 ? 1 : slash);
        above_ = add(pathAbove_);
    }
}

bool FolderWatch::needsPolling() const {
    struct stat status {};
    return above_ < 0 || lstat((pathAbove_ + "/" + next_).c_str(), &status) == 0;
}

void FolderWatch::tryAgain() {
    if (folder_ < 0) {
        attach();
        if (folder_ >= 0) {
            notice_("");
        }
    }
}

void FolderWatch::read() {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    bool stale = false;
    ssize_t size = 0;
    while ((size = ::read(inotify_.get(), buffer.data(), buffer.size())) > 0) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            const char* const name = event.len > 0 ? buffer.data() + at + sizeof event : "";
            at += sizeof event + event.len;
            const bool ours = event.wd == folder_ || event.wd == above_;
            stale = stale || (event.mask & IN_Q_OVERFLOW) != 0 ||
                    (ours && (event.mask & kGone) != 0) || (event.wd == above_ && name == next_);
            if (event.wd == folder_ && *name != '\0') {
                notice_(name);
            }
        }
    }
    if (stale) {
        attach();
        notice_("");
    }
}

}  // namespace chimewerk
