// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/mount_table.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "linux/base/file_reading.h"
#include "linux/base/text_parts.h"

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
    for (const std::string_view line : split(mountInfo, '\n')) {
        // The fields are identifier, parent, device, root, mount point, options, optional fields, a
        // dash, then type, source and options of the file system.
        constexpr std::size_t kPoint = 4;
        constexpr std::size_t kOptions = 5;
        const auto fields = words(line);
        const auto dash = std::ranges::find(fields, "-");
        if (dash - fields.begin() <= static_cast<std::ptrdiff_t>(kOptions) ||
            fields.end() - dash <= 2) {
            continue;
        }
        const bool isDisk = dash[2].starts_with("/dev/") || dash[1] == "zfs";
        const std::string_view options = fields[kOptions];
        if (isDisk && (options == "rw" || options.starts_with("rw,"))) {
            disks.push_back(unescaped(fields[kPoint]));
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
    constexpr std::size_t kMost = std::size_t{16} << 20;
    lseek(file_.get(), 0, SEEK_SET);
    disks_ = writableDisksIn(readText(file_.get(), kMost).value_or(""));
}

}  // namespace chimewerk
