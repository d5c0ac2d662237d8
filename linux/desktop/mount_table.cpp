// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/mount_table.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>
#include <utility>

namespace chimewerk {

namespace {

/// Resolves the kernel's escapes: a backslash and three octal digits.
std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size()) {
            result += static_cast<char>(((text[i + 1] - '0') << 6) | ((text[i + 2] - '0') << 3) |
                                        (text[i + 3] - '0'));
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

}  // namespace

std::vector<std::string> writableDisksIn(std::string_view mountInfo) {
    std::vector<std::string> disks;
    std::istringstream lines{std::string(mountInfo)};
    for (std::string line; std::getline(lines, line);) {
        // The fields are identifier, parent, device, root, mount point, options, optional fields, a
        // dash, then type, source and options of the file system.
        std::istringstream fields(line);
        std::string skipped;
        std::string point;
        std::string options;
        std::string type;
        std::string source;
        fields >> skipped >> skipped >> skipped >> skipped >> point >> options;
        while (fields >> skipped && skipped != "-") {
        }
        fields >> type >> source;
        const bool isDisk = source.starts_with("/dev/") || type == "zfs";
        if (fields && isDisk && (options == "rw" || options.starts_with("rw,"))) {
            disks.push_back(unescaped(point));
        }
    }
    std::ranges::sort(disks);
    return disks;
}

MountTable::MountTable(const std::string& file)
    : path_(file), file_(open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
    read();
}

bool MountTable::watch(EpollMainQueue& queue, std::function<void()> changed) {
    watchedFile_ = FileDescriptor(open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    // The table is readable all the time. The kernel reports an exceptional condition only to the
    // first that asks, which would be the loop that watches the queue.
    watch_ = queue.watch(watchedFile_.get(), std::move(changed), EpollMainQueue::Trigger::edge);
    return watch_ != nullptr;
}

bool MountTable::refresh() {
    pollfd state{.fd = file_.get(), .events = POLLPRI, .revents = 0};
    if (!file_ || poll(&state, 1, 0) <= 0 || (state.revents & (POLLPRI | POLLERR)) == 0) {
        return false;
    }
    const std::vector<std::string> before = disks_;
    read();
    return disks_ != before;
}

void MountTable::read() {
    std::string text;
    std::array<char, 4096> part{};
    lseek(file_.get(), 0, SEEK_SET);
    ssize_t size = 0;
    while ((size = ::read(file_.get(), part.data(), part.size())) > 0) {
        text.append(part.data(), static_cast<std::size_t>(size));
    }
    disks_ = writableDisksIn(text);
}

}  // namespace chimewerk
