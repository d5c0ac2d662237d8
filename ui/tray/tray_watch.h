// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusServiceWatcher>
#include <cstdint>
#include <functional>
#include <memory>

namespace chimewerk {

/// Waits until the desktop has a tray: one that icons register with over the session bus, or one
/// that embeds windows on an X11 display. The toolkit chooses between the two once, when the first
/// icon is made, so no icon may be made before there is a tray. Main thread only.
class TrayWatch final : private QAbstractNativeEventFilter {
public:
    /// `onTray` is called once: by the constructor if there is a tray already, else from the
    /// event loop.
    explicit TrayWatch(std::function<void()> onTray);
    ~TrayWatch() override;
    TrayWatch(const TrayWatch&) = delete;
    TrayWatch& operator=(const TrayWatch&) = delete;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool hasTray() const;
    void found();

    std::function<void()> onTray_;
    std::unique_ptr<QDBusServiceWatcher> registrar_;
    /// The atoms of the X11 display; 0 without one.
    std::uint32_t manager_ = 0;
    std::uint32_t traySelection_ = 0;
};

}  // namespace chimewerk
