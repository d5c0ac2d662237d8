// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/window_frame.h"

#include <xcb/xcb.h>

#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QStandardPaths>
#include <cstdlib>
#include <memory>

namespace chimewerk {

namespace {

xcb_atom_t atomNamed(xcb_connection_t* server, const QByteArray& name) {
    const auto cookie =
        xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(server, cookie, nullptr), &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

}  // namespace

void setDarkFrame(QWidget& window, bool isDark) {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* const server = x11 == nullptr ? nullptr : x11->connection();
    if (server == nullptr) {
        return;
    }
    const auto set = [&](const char* property, xcb_atom_t type, const QByteArray& value) {
        xcb_change_property(server, XCB_PROP_MODE_REPLACE,
                            static_cast<xcb_window_t>(window.winId()), atomNamed(server, property),
                            type, 8, static_cast<std::uint32_t>(value.size()), value.constData());
    };
    set("_GTK_THEME_VARIANT", atomNamed(server, "UTF8_STRING"), isDark ? "dark" : "light");
    const QString scheme =
        QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                               isDark ? QStringLiteral("color-schemes/BreezeDark.colors")
                                      : QStringLiteral("color-schemes/BreezeLight.colors"));
    if (!scheme.isEmpty()) {
        set("_KDE_NET_WM_COLOR_SCHEME", XCB_ATOM_STRING, QFile::encodeName(scheme));
    }
    xcb_flush(server);
}

}  // namespace chimewerk
