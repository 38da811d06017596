// SPDX-License-Identifier: MIT
#include "platform/qt/tray_areas.h"

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace vantrell {

namespace {

// org.kde.StatusNotifierWatcher, as the StatusNotifierItem specification names it.
const QString kWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");

constexpr int kAnswerWithinMs = 2000;
// The X server reports a new owner only to programs that know the old owner's window, so we have to ask for it.
constexpr std::chrono::milliseconds kXEmbedInterval{1000};

xcb_connection_t* xConnection() {
    const auto* x = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x != nullptr ? x->connection() : nullptr;
}

template <class Reply>
using XReply = std::unique_ptr<Reply, decltype(&std::free)>;

// The selection that an XEmbed tray of our screen owns; 0 when it cannot be named.
xcb_atom_t traySelection(xcb_connection_t* x) {
    int screen = 0;
    char* host = nullptr;
    int display = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) screen = 0;
    std::free(host);
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(screen);
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr), &std::free);
    return reply ? reply->atom : 0;
}

}  // namespace

TrayAreas::TrayAreas(std::function<void()> changed) : changed_(std::move(changed)) {
    timer_.setInterval(kXEmbedInterval);
    connect(&timer_, &QTimer::timeout, this, &TrayAreas::lookForXEmbedTray);
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, &TrayAreas::askForHost);
}

void TrayAreas::watch() {
    if (xcb_connection_t* x = xConnection(); x != nullptr) {
        selection_ = traySelection(x);
        hadXEmbedTray_ = hasXEmbedTray();
        timer_.start();
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        isKnown_ = true;
        return;
    }
    watcher_.setConnection(bus);
    watcher_.addWatchedService(kWatcher);
    for (const QString& change :
         {QStringLiteral("StatusNotifierHostRegistered"), QStringLiteral("StatusNotifierHostUnregistered")})
        bus.connect(kWatcher, kWatcherPath, kWatcher, change, this, SLOT(askForHost()));
    askForHost();
}

void TrayAreas::askForHost() {
    QDBusMessage get = QDBusMessage::createMethodCall(
        kWatcher, kWatcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get.setArguments({kWatcher, QStringLiteral("IsStatusNotifierHostRegistered")});
    get.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(get, kAnswerWithinMs), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question = ++question_] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (question == question_) hostAnswered(reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayAreas::hostAnswered(bool hasHost) {
    hasHost_ = hasHost;
    isKnown_ = true;
    changed_();
}

bool TrayAreas::hasXEmbedTray() const {
    xcb_connection_t* x = xConnection();
    if (x == nullptr || selection_ == 0) return false;
    const auto cookie = xcb_get_selection_owner(x, selection_);
    const XReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(x, cookie, nullptr), &std::free);
    return reply && reply->owner != XCB_NONE;
}

void TrayAreas::lookForXEmbedTray() {
    const bool hasTray = hasXEmbedTray();
    if (std::exchange(hadXEmbedTray_, hasTray) != hasTray) changed_();
}

}  // namespace vantrell
