// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <list>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "monitors/keyboard_monitor.h"

namespace chimewerk {

/// Shows a local page with the desktop's default program, through xdg-open.
class XdgPermissionPage final : public PermissionPage {
public:
    /// `file` is the absolute path of the page. The queue must outlive the object.
    XdgPermissionPage(EpollMainQueue& queue, std::string file);
    ~XdgPermissionPage() override;

    /// The program that shows the page keeps running when this one ends.
    void show() override;

private:
    struct Opener;

    void reap(std::list<Opener>::iterator opener);

    EpollMainQueue& queue_;
    const std::string file_;
    std::list<Opener> running_;
};

}  // namespace chimewerk
