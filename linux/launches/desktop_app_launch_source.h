#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/desktop/session_environment.h"
#include "linux/launches/systemd_app_launches.h"
#include "linux/launches/x11_app_launches.h"
#include "monitors/app_launch_monitor.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Hears of launched applications in the ways that this session has: the units that desktops start
/// applications in, and in an X11 session the first windows of processes that are in no such unit. The two go
/// side by side, because a running systemd does not tell whether the desktop uses it: a plain window manager
/// starts its programs by itself. Where there is neither, no launch is heard.
class DesktopAppLaunchSource final : public AppLaunchSource {
public:
    /// The queue outlives the source.
    DesktopAppLaunchSource(EpollMainQueue& queue, SessionEnvironment environment);

    Token addObserver(std::function<void()> onLaunch) override;
    void removeObserver(Token token) override;

private:
    void listen();
    void tell();
    bool isInHeardUnit(pid_t process) const;

    EpollMainQueue& queue_;
    const SessionEnvironment environment_;
    std::map<Token, std::function<void()>> observers_;
    Token lastToken_ = 0;
    std::unique_ptr<SystemdAppLaunches> units_;
    std::unique_ptr<X11AppLaunches> windows_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
