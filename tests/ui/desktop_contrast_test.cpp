// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/desktop_contrast.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QMap>
#include <QVariantMap>

#include "support/widget_input.h"

namespace chimewerk {
namespace {

using Settings = QMap<QString, QVariantMap>;

/// The portal with the desktop's settings, on a connection of its own.
class FakePortal final : public QDBusVirtualObject {
public:
    FakePortal() {
        qDBusRegisterMetaType<Settings>();
        bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
        bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        return bus.send(call.createReply(QVariant::fromValue(settings)));
    }
    QString introspect(const QString& /*path*/) const override { return {}; }
    void change(const char* space, const char* key, const QVariant& value) {
        settings[QLatin1String(space)][QLatin1String(key)] = value;
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << QLatin1String(space) << QLatin1String(key)
               << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }

    Settings settings;

private:
    QDBusConnection bus_ =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
};

TEST(TheDesktopsContrast, IsThatOfThePortalOfGnomesSwitchAndOfTheTheme) {
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QApplication toolkit(count, arguments);
    FakePortal portal;
    portal.settings[QStringLiteral("org.freedesktop.appearance")][QStringLiteral("contrast")] = 1U;
    std::optional<bool> isHigh;
    DesktopContrast contrast([&isHigh](bool high) { isHigh = high; });
    const auto becomes = [&isHigh](bool wanted) {
        return becomesTrue([&] { return isHigh == wanted; });
    };
    EXPECT_TRUE(becomes(true)) << "from the start";
    portal.change("org.freedesktop.appearance", "contrast", 0U);
    EXPECT_TRUE(becomes(false));
    portal.change("org.gnome.desktop.a11y.interface", "high-contrast", true);
    EXPECT_TRUE(becomes(true));
    portal.change("org.gnome.desktop.a11y.interface", "high-contrast", false);
    EXPECT_TRUE(becomes(false));
    portal.change("org.gnome.desktop.interface", "gtk-theme", QStringLiteral("HighContrast"));
    EXPECT_TRUE(becomes(true));
    portal.change("org.gnome.desktop.interface", "gtk-theme", QStringLiteral("Adwaita"));
    EXPECT_TRUE(becomes(false));
}

}  // namespace
}  // namespace chimewerk
