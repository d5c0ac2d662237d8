// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/tray_watch.h"

#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

constexpr auto kRegistrar = "org.kde.StatusNotifierWatcher";

/// Returns the toolkit's connection to the X11 display; null if the windows are not on one.
xcb_connection_t* x11Connection() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atomNamed(xcb_connection_t* server, std::string_view name) {
    const auto cookie =
        xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(server, cookie, nullptr), &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

bool hasOwner(xcb_connection_t* server, xcb_atom_t selection) {
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> reply(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, selection), nullptr),
        &std::free);
    return reply != nullptr && reply->owner != XCB_WINDOW_NONE;
}

}  // namespace

TrayWatch::TrayWatch(std::function<void()> onTray) : onTray_(std::move(onTray)) {
    if (xcb_connection_t* const server = x11Connection()) {
        manager_ = atomNamed(server, "MANAGER");
        traySelection_ = atomNamed(server, "_NET_SYSTEM_TRAY_S0");
        // A new tray sends a message to the root window, whose events the toolkit has selected.
        qApp->installNativeEventFilter(this);
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        registrar_ = std::make_unique<QDBusServiceWatcher>(
            QLatin1String(kRegistrar), bus, QDBusServiceWatcher::WatchForRegistration);
        QObject::connect(registrar_.get(), &QDBusServiceWatcher::serviceRegistered,
                         registrar_.get(), [this] { found(); });
    }
    if (hasTray()) {
        found();
    }
}

TrayWatch::~TrayWatch() {
    // In a sudden end the application is destroyed first, with its filters.
    if (qApp != nullptr) {
        qApp->removeNativeEventFilter(this);
    }
}

bool TrayWatch::hasTray() const {
    if (registrar_ != nullptr) {
        const auto* const bus = QDBusConnection::sessionBus().interface();
        if (bus->isServiceRegistered(QLatin1String(kRegistrar)).value()) {
            return true;
        }
    }
    xcb_connection_t* const server = x11Connection();
    return server != nullptr && hasOwner(server, traySelection_);
}

void TrayWatch::found() {
    if (const auto onTray = std::exchange(onTray_, nullptr)) {
        onTray();
    }
}

bool TrayWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (onTray_ == nullptr || eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* const event = static_cast<const xcb_client_message_event_t*>(message);
    if ((event->response_type & 0x7FU) == XCB_CLIENT_MESSAGE && event->type == manager_ &&
        event->data.data32[1] == traySelection_) {
        found();
    }
    return false;
}

}  // namespace chimewerk
