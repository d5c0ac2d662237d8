// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QTimer>
#include <QVariant>
#include <cstdint>
#include <functional>
#include <memory>

namespace chimewerk {

/// Waits until the desktop has a tray: a host of icons that register over the session bus, or a
/// window that embeds icons on an X11 display. The toolkit chooses between the two once, when the
/// first icon is made, so make no icon before.
///
/// The bus name for the icons' registration may appear long before a host that shows them. While it
/// is owned, an embedding tray counts only if no host appears for some seconds: it may only pass
/// icons on to a host. With Qt 6.8 and later it does not count at all then, because the toolkit
/// would not use it. Main thread only.
class TrayWatch final : private QAbstractNativeEventFilter {
public:
    /// All are called from the event loop.
    struct Callbacks {
        /// There is a tray. Called once.
        std::function<void()> onTray;
        /// Called after that whenever the tray has gone or come back.
        std::function<void()> onChange;
    };

    explicit TrayWatch(Callbacks callbacks);
    ~TrayWatch() override;
    TrayWatch(const TrayWatch&) = delete;
    TrayWatch& operator=(const TrayWatch&) = delete;

    /// Whether it is known if there is a tray yet, or nobody has answered for a moment.
    bool isKnown() const { return isKnown_; }
    /// Whether there is a tray now.
    bool isThere() const;
    /// Waits, for a moment at most, until the registrar has done what it was asked so far.
    static void waitForRegistrar();
    /// Whether the tray that was found first is a host on the bus.
    bool usesHost() const { return usesHost_; }

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void watchRegistrar();
    void askForHost();
    void onAnswer(const QDBusPendingReply<QVariant>& answer);
    void countEmbedding();
    void found(bool isHost);
    void setHost(bool isThere);
    void setKnown();

    Callbacks callbacks_;
    /// The kind that was found first, which the toolkit uses from then on.
    bool usesHost_ = false;
    bool hostIsThere_ = false;
    bool isKnown_ = false;
    std::unique_ptr<QDBusServiceWatcher> registrar_;
    /// Started by the registrar's signal, which needs a receiver with a slot.
    QTimer hostSignal_;
    std::unique_ptr<QDBusPendingCallWatcher> asking_;
    QTimer patience_;
    QTimer answerPatience_;
    /// Whether a tray that embeds windows may be used.
    bool embeddingCounts_ = false;
    /// The atoms of the X11 display; 0 without one.
    std::uint32_t manager_ = 0;
    std::uint32_t traySelection_ = 0;
};

}  // namespace chimewerk
