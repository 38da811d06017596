// SPDX-License-Identifier: MIT
#include "platform/qt/qt_session_end.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <utility>

namespace vantrell {

namespace {

const QString kLogind = QStringLiteral("org.freedesktop.login1");
const QString kLogindPath = QStringLiteral("/org/freedesktop/login1");
const QString kManager = QStringLiteral("org.freedesktop.login1.Manager");

}  // namespace

QtSessionEnd::QtSessionEnd(std::function<void()> save, std::function<void()> closeForGood)
    : save_(std::move(save)), closeForGood_(std::move(closeForGood)) {
    connect(&logind_, &QDBusServiceWatcher::serviceRegistered, this, &QtSessionEnd::delayShutdown);
}

void QtSessionEnd::start() {
    listenToSessionManager();
    listenToLogind();
}

// Only the start-up entry decides whether the program starts with the session. If the session manager started it as
// well, the second instance would only complain.
void QtSessionEnd::listenToSessionManager() {
    const auto neverRestart = [](QSessionManager& manager) { manager.setRestartHint(QSessionManager::RestartNever); };
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, neverRestart);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this, neverRestart](QSessionManager& manager) {
        neverRestart(manager);
        save_();
    });
    connect(qGuiApp, &QCoreApplication::aboutToQuit, this, [this] { closeForGood_(); });
    qGuiApp->installEventFilter(this);
}

// Qt turns the session manager's order to end into this event. Without this filter Qt would close the windows one by
// one, and stop at the first one that refuses.
bool QtSessionEnd::eventFilter(QObject* object, QEvent* event) {
    if (object != qGuiApp || event->type() != QEvent::Quit) return false;
    closeForGood_();
    event->accept();
    return true;
}

void QtSessionEnd::listenToLogind() {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    logind_.setConnection(bus);
    logind_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    logind_.addWatchedService(kLogind);
    bus.connect(kLogind, kLogindPath, kManager, QStringLiteral("PrepareForShutdown"), this,
                SLOT(prepareForShutdown(bool)));
    delayShutdown();
}

void QtSessionEnd::delayShutdown() {
    QDBusMessage inhibit = QDBusMessage::createMethodCall(kLogind, kLogindPath, kManager, QStringLiteral("Inhibit"));
    inhibit.setArguments({QStringLiteral("shutdown"), QStringLiteral("Vantrell"),
                          tr("Settings and activity log are being saved"), QStringLiteral("delay")});
    inhibit.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(inhibit), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *answer;
        answer->deleteLater();
        if (reply.isValid()) delay_ = reply.value();
    });
}

void QtSessionEnd::prepareForShutdown(bool begins) {
    if (!begins) return;
    closeForGood_();
    delay_ = QDBusUnixFileDescriptor();
}

}  // namespace vantrell
