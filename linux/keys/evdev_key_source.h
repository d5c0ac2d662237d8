#pragma once

#include <string>

#include "linux/base/epoll_main_queue.h"
#include "monitors/keyboard_monitor.h"

namespace chimewerk {

/// Hears the keyboards at the kernel, through libevdev, wherever the focus is and whatever the desktop: every
/// event device that has a key that types and that this process may read. Keyboards that come later, or may
/// be read only later, are heard from then on; one that may no longer be read, because another user has taken
/// over the screen, is left alone until it may. One that is unplugged or breaks is reported as a disabled
/// tap, and its fellows are heard on. Nothing is grabbed. While no key is pressed nothing is done.
///
/// libevdev and not libinput: one descriptor per keyboard with nothing between the kernel and us, and no
/// touchpads, seats and timers along with it.
class EvdevKeySource final : public KeySource {
public:
    /// `folder` is where the kernel's input devices are. The queue outlives the source and its taps.
    explicit EvdevKeySource(EpollMainQueue& queue, std::string folder = "/dev/input");

    /// Whether at least one keyboard can be read.
    bool trusted() override;
    std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) override;

private:
    EpollMainQueue& queue_;
    const std::string folder_;
};

}  // namespace chimewerk
