// SPDX-License-Identifier: MIT
#include "platform/qt/qt_notifier.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace vantrell {

namespace {

const QString kServer = QStringLiteral("org.freedesktop.Notifications");
const QString kDesktopId = QStringLiteral("vantrell-zep");
// As the server calls it when somebody clicks on the notification itself.
const QString kClick = QStringLiteral("default");
constexpr uchar kNormalUrgency = 1;
constexpr uchar kCriticalUrgency = 2;
constexpr int kServersOwnTime = -1;
constexpr int kUntilItIsClosed = 0;

QDBusMessage message(const QString& method, const QVariantList& arguments = {}) {
    QDBusMessage made =
        QDBusMessage::createMethodCall(kServer, QStringLiteral("/org/freedesktop/Notifications"), kServer, method);
    made.setArguments(arguments);
    return made;
}

}  // namespace

QtNotifier::QtNotifier() {
    connect(&server_, &QDBusServiceWatcher::serviceOwnerChanged, this, &QtNotifier::serverChanged);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    server_.setConnection(bus);
    server_.addWatchedService(kServer);
    QDBusConnection(bus).connect(kServer, QStringLiteral("/org/freedesktop/Notifications"), kServer,
                                 QStringLiteral("ActionInvoked"), this, SLOT(actionInvoked(quint32, QString)));
}

void QtNotifier::actionInvoked(quint32 id, const QString& action) {
    if (id == id_ && action == kClick) wasClicked();
}

void QtNotifier::show(const std::string& title, const std::string& text, Urgency urgency) {
    if (!QDBusConnection::sessionBus().isConnected()) return;
    next_ = Texts{QString::fromStdString(title), QString::fromStdString(text), urgency};
    isToClose_ = false;
    goOn();
}

void QtNotifier::withdraw() {
    next_.reset();
    isToClose_ = true;
    goOn();
}

// Only one call is under way at a time, since the next call needs the number from its answer. Of several requests that
// come meanwhile only the latest is carried out.
void QtNotifier::goOn() {
    if (isCalling_) return;
    if (next_ && !hasMarkup_) return askForMarkup();
    if (next_) return notify(*std::exchange(next_, std::nullopt));
    if (std::exchange(isToClose_, false) && id_ != 0) close();
}

template <class Finished>
void QtNotifier::call(const QDBusMessage& message, Finished finished) {
    isCalling_ = true;
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, finished] {
        isCalling_ = false;
        answer->deleteLater();
        finished(*answer);
        goOn();
    });
}

// Where no notification server runs, the bus says so at once, and the notification is dropped.
void QtNotifier::askForMarkup() {
    call(message(QStringLiteral("GetCapabilities")), [this](const QDBusPendingCall& answer) {
        const QDBusPendingReply<QStringList> reply = answer;
        if (reply.isValid())
            hasMarkup_ = reply.value().contains(QStringLiteral("body-markup"));
        else
            next_.reset();
    });
}

void QtNotifier::notify(const Texts& texts) {
    const bool isCritical = texts.urgency == Urgency::critical;
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), kDesktopId},
        {QStringLiteral("urgency"), QVariant::fromValue(isCritical ? kCriticalUrgency : kNormalUrgency)}};
    const QStringList actions{kClick, QStringLiteral("Open")};
    const QString body = hasMarkup_.value_or(false) ? texts.body.toHtmlEscaped() : texts.body;
    call(message(QStringLiteral("Notify"), {QStringLiteral("Vantrell"), id_, kDesktopId, texts.title, body, actions,
                                            hints, isCritical ? kUntilItIsClosed : kServersOwnTime}),
         [this](const QDBusPendingCall& answer) {
             const QDBusPendingReply<quint32> reply = answer;
             if (reply.isValid()) id_ = reply.value();
         });
}

void QtNotifier::close() {
    call(message(QStringLiteral("CloseNotification"), {std::exchange(id_, 0)}), [](const QDBusPendingCall&) {});
}

// A new server does not know our number. With the old number we might replace the notification of another program.
void QtNotifier::serverChanged() {
    id_ = 0;
    hasMarkup_.reset();
}

}  // namespace vantrell
