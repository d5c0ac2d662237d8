// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/desktop_contrast.h"

#include <xcb/xcb.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QMap>
#include <QVariantMap>
#include <cstdlib>
#include <string>
#include <utility>

#include "ui/rules/contrast.h"

namespace chimewerk {

namespace {

constexpr auto kPortal = "org.freedesktop.portal.Desktop";
constexpr auto kPortalPath = "/org/freedesktop/portal/desktop";
constexpr auto kSettings = "org.freedesktop.portal.Settings";
constexpr auto kAppearance = "org.freedesktop.appearance";
constexpr auto kAccessibility = "org.gnome.desktop.a11y.interface";
constexpr auto kInterface = "org.gnome.desktop.interface";

using Settings = QMap<QString, QVariantMap>;

bool wantContrast(const Settings& settings) {
    const auto value = [&settings](const char* space, const char* key) {
        return settings.value(QLatin1String(space)).value(QLatin1String(key));
    };
    return value(kAppearance, "contrast").toUInt() == 1 ||
           value(kAccessibility, "high-contrast").toBool() ||
           isHighContrastTheme(value(kInterface, "gtk-theme").toString().toStdString());
}

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atomNamed(xcb_connection_t* server, const std::string& name) {
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(
            server,
            xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr),
        &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

/// Returns the settings that the desktop shares with the programs of an X11 display.
std::string xSettings() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* const server = x11 == nullptr ? nullptr : x11->connection();
    if (server == nullptr) {
        return {};
    }
    constexpr std::uint32_t kMostWords = 1U << 14U;
    const Owned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(
            server, xcb_get_selection_owner(server, atomNamed(server, "_XSETTINGS_S0")), nullptr),
        &std::free);
    if (owner == nullptr || owner->owner == XCB_WINDOW_NONE) {
        return {};
    }
    const xcb_atom_t name = atomNamed(server, "_XSETTINGS_SETTINGS");
    const Owned<xcb_get_property_reply_t> property(
        xcb_get_property_reply(
            server, xcb_get_property(server, 0, owner->owner, name, name, 0, kMostWords), nullptr),
        &std::free);
    if (property == nullptr) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(property.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(property.get()))};
}

}  // namespace

DesktopContrast::DesktopContrast(std::function<void(bool isHigh)> onChange)
    : onChange_(std::move(onChange)) {
    portalChanged_.setSingleShot(true);
    QObject::connect(&portalChanged_, &QTimer::timeout, &portalChanged_, [this] { askPortal(); });
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        bus.connect(QLatin1String(kPortal), QLatin1String(kPortalPath), QLatin1String(kSettings),
                    QStringLiteral("SettingChanged"), &portalChanged_, SLOT(start()));
        askPortal();
    }
}

void DesktopContrast::readTheme() {
    themeWants_ = isHighContrastTheme(themeInXSettings(xSettings())) ||
                  isHighContrastTheme(qgetenv("GTK_THEME").toStdString());
    update();
}

void DesktopContrast::askPortal() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(QLatin1String(kPortal), QLatin1String(kPortalPath),
                                       QLatin1String(kSettings), QStringLiteral("ReadAll"));
    question << QStringList{QLatin1String(kAppearance), QLatin1String(kAccessibility),
                            QLatin1String(kInterface)};
    asking_ = std::make_unique<QDBusPendingCallWatcher>(
        QDBusConnection::sessionBus().asyncCall(question));
    QObject::connect(asking_.get(), &QDBusPendingCallWatcher::finished, asking_.get(),
                     [this](QDBusPendingCallWatcher* answered) { onAnswer(*answered); });
}

void DesktopContrast::onAnswer(const QDBusPendingCall& answer) {
    const QDBusMessage reply = answer.reply();
    if (reply.type() == QDBusMessage::ReplyMessage &&
        reply.signature() == QLatin1String("a{sa{sv}}")) {
        portalWants_ =
            wantContrast(qdbus_cast<Settings>(reply.arguments().first().value<QDBusArgument>()));
        update();
    }
}

void DesktopContrast::update() {
    if (const bool isHigh = portalWants_ || themeWants_; isHigh != isHigh_) {
        isHigh_ = isHigh;
        onChange_(isHigh);
    }
}

}  // namespace chimewerk
