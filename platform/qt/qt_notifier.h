// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <optional>

#include "platform/notifier.h"

class QDBusMessage;
class QDBusPendingCallWatcher;

namespace vantrell {

/// Notifications over org.freedesktop.Notifications. No call waits for its answer.
class QtNotifier final : public QObject, public Notifier {
    Q_OBJECT

public:
    QtNotifier();

    void show(const std::string& title, const std::string& text, Urgency urgency) override;
    void withdraw() override;

private:
    struct Texts {
        QString title;
        QString body;
        Urgency urgency;
    };

private Q_SLOTS:
    void actionInvoked(quint32 id, const QString& action);

private:
    void goOn();
    void askForMarkup();
    void notify(const Texts& texts);
    void close();
    void serverChanged();
    template <class Finished>
    void call(const QDBusMessage& message, Finished finished);

    QDBusServiceWatcher server_;
    std::optional<Texts> next_;
    std::optional<bool> hasMarkup_;
    quint32 id_ = 0;
    bool isCalling_ = false;
    bool isToClose_ = false;
};

}  // namespace vantrell
