// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/tray_watch.h"

#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QVersionNumber>
#include <chrono>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

constexpr auto kRegistrar = "org.kde.StatusNotifierWatcher";
constexpr auto kRegistrarPath = "/StatusNotifierWatcher";
/// How long a host may appear after the registrar. Panels take some seconds to load at login.
constexpr std::chrono::seconds kPatience{5};
/// How long the registrar may take to answer before nothing waits for it any more.
constexpr std::chrono::milliseconds kAnswerPatience{200};

/// Returns whether the toolkit embeds icons while the registrar has no host. Since Qt 6.8 it hands
/// them to the registrar even then, where nobody sees them.
bool embedsBesideRegistrar() {
    return QLibraryInfo::version() < QVersionNumber(6, 8);
}

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

/// Makes the call that asks whether there is a host.
QDBusMessage questionForHost() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QLatin1String(kRegistrar), QLatin1String(kRegistrarPath),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QLatin1String(kRegistrar) << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    return question;
}

}  // namespace

TrayWatch::TrayWatch(Callbacks callbacks) : callbacks_(std::move(callbacks)) {
    if (xcb_connection_t* const server = x11Connection()) {
        manager_ = atomNamed(server, "MANAGER");
        traySelection_ = atomNamed(server, "_NET_SYSTEM_TRAY_S0");
        // A new tray sends a message to the root window, whose events the toolkit already receives.
        qApp->installNativeEventFilter(this);
    }
    hostSignal_.setSingleShot(true);
    QObject::connect(&hostSignal_, &QTimer::timeout, &hostSignal_, [this] { askForHost(); });
    patience_.setSingleShot(true);
    patience_.setInterval(kPatience);
    if (embedsBesideRegistrar()) {
        QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] { countEmbedding(); });
    }
    answerPatience_.setSingleShot(true);
    QObject::connect(&answerPatience_, &QTimer::timeout, &answerPatience_, [this] { setKnown(); });
    answerPatience_.start(kAnswerPatience);
    if (QDBusConnection::sessionBus().isConnected()) {
        watchRegistrar();
    } else {
        QTimer::singleShot(0, &patience_, [this] {
            countEmbedding();
            setKnown();
        });
    }
}

TrayWatch::~TrayWatch() {
    // In a sudden end the application, with its filters, is destroyed first.
    if (qApp != nullptr) {
        qApp->removeNativeEventFilter(this);
    }
}

void TrayWatch::watchRegistrar() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    registrar_ = std::make_unique<QDBusServiceWatcher>(QLatin1String(kRegistrar), bus,
                                                       QDBusServiceWatcher::WatchForOwnerChange);
    QObject::connect(registrar_.get(), &QDBusServiceWatcher::serviceOwnerChanged, registrar_.get(),
                     [this](const QString&, const QString&, const QString& owner) {
                         if (owner.isEmpty()) {
                             setHost(false);
                             countEmbedding();
                         } else {
                             askForHost();
                         }
                     });
    bus.connect(QLatin1String(kRegistrar), QLatin1String(kRegistrarPath), QLatin1String(kRegistrar),
                QStringLiteral("StatusNotifierHostRegistered"), &hostSignal_, SLOT(start()));
    bus.connect(QLatin1String(kRegistrar), QLatin1String(kRegistrarPath), QLatin1String(kRegistrar),
                QStringLiteral("StatusNotifierHostUnregistered"), &hostSignal_, SLOT(start()));
    askForHost();
}

void TrayWatch::askForHost() {
    if (callbacks_.onTray == nullptr && !usesHost_) {
        return;
    }
    if (callbacks_.onTray != nullptr && !patience_.isActive()) {
        embeddingCounts_ = false;
        patience_.start();
    }
    asking_ = std::make_unique<QDBusPendingCallWatcher>(
        QDBusConnection::sessionBus().asyncCall(questionForHost()));
    QObject::connect(asking_.get(), &QDBusPendingCallWatcher::finished, asking_.get(),
                     [this](QDBusPendingCallWatcher* answered) { onAnswer(*answered); });
}

void TrayWatch::onAnswer(const QDBusPendingReply<QVariant>& answer) {
    const QString error = answer.error().name();
    if (answer.isValid()) {
        setHost(answer.value().toBool());
    } else if (error == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
               error == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown")) {
        countEmbedding();
    }
    setKnown();
}

void TrayWatch::waitForRegistrar() {
    QDBusConnection::sessionBus().call(questionForHost(), QDBus::Block, kAnswerPatience.count());
}

void TrayWatch::setKnown() {
    answerPatience_.stop();
    isKnown_ = true;
}

void TrayWatch::countEmbedding() {
    patience_.stop();
    embeddingCounts_ = true;
    xcb_connection_t* const server = x11Connection();
    if (server != nullptr && hasOwner(server, traySelection_)) {
        found(false);
    }
}

void TrayWatch::found(bool isHost) {
    if (const auto onTray = std::exchange(callbacks_.onTray, nullptr)) {
        usesHost_ = isHost;
        onTray();
    }
}

void TrayWatch::setHost(bool isThere) {
    if (std::exchange(hostIsThere_, isThere) == isThere) {
        return;
    }
    if (isThere && callbacks_.onTray != nullptr) {
        found(true);
    } else if (usesHost_) {
        callbacks_.onChange();
    }
}

bool TrayWatch::isThere() const {
    if (callbacks_.onTray != nullptr || usesHost_) {
        return hostIsThere_;
    }
    xcb_connection_t* const server = x11Connection();
    return server != nullptr && hasOwner(server, traySelection_);
}

bool TrayWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (callbacks_.onTray == nullptr || !embeddingCounts_ || eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* const event = static_cast<const xcb_client_message_event_t*>(message);
    if ((event->response_type & 0x7FU) == XCB_CLIENT_MESSAGE && event->type == manager_ &&
        event->data.data32[1] == traySelection_) {
        found(false);
    }
    return false;
}

}  // namespace chimewerk
