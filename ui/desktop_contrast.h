// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusPendingCallWatcher>
#include <QTimer>
#include <functional>
#include <memory>

namespace chimewerk {

/// Knows whether the desktop wants high contrast: by the portal's setting of that name, GNOME's
/// switch, or a high-contrast theme of GTK. Main thread only.
class DesktopContrast {
public:
    /// Asks the portal without waiting. `onChange` is called from the event loop when the answer
    /// differs from the one before; at first it is no.
    explicit DesktopContrast(std::function<void(bool isHigh)> onChange);

    /// Reads the theme of an X11 desktop again, whose changes are not followed.
    void readTheme();
    /// Lives as long as this object; for connections that call it.
    QObject& context() { return portalChanged_; }

private:
    void askPortal();
    void onAnswer(const QDBusPendingCall& answer);
    void update();

    const std::function<void(bool isHigh)> onChange_;
    /// Started by the portal's signal, which needs a receiver with a slot.
    QTimer portalChanged_;
    std::unique_ptr<QDBusPendingCallWatcher> asking_;
    bool portalWants_ = false;
    bool themeWants_ = false;
    bool isHigh_ = false;
};

}  // namespace chimewerk
