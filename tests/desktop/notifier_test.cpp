// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include "platform/qt/qt_notifier.h"

namespace vantrell::test {
namespace {

/// A notification server on the bus, by a connection of its own.
class Server : public QDBusVirtualObject {
public:
    explicit Server(QStringList capabilities) : capabilities_(std::move(capabilities)) {
        connection_.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this);
        connection_.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }
    ~Server() override { QDBusConnection::disconnectFromBus(QStringLiteral("server")); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QVariantList arguments = message.arguments();
        if (message.member() == QLatin1String("GetCapabilities"))
            return connection.send(message.createReply(capabilities_));
        if (message.member() == QLatin1String("CloseNotification")) {
            closed.push_back(arguments.at(0).toUInt());
            return connection.send(message.createReply());
        }
        shown.push_back(arguments);
        const quint32 replaced = arguments.at(1).toUInt();
        return connection.send(message.createReply(replaced != 0 ? replaced : nextId_++));
    }

    void click(quint32 id) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                         QStringLiteral("org.freedesktop.Notifications"),
                                                         QStringLiteral("ActionInvoked"));
        connection_.send(signal << id << QStringLiteral("default"));
    }

    QList<QVariantList> shown;
    QList<quint32> closed;

private:
    QDBusConnection connection_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("server"));
    QStringList capabilities_;
    quint32 nextId_ = 7;
};

QString bodyOf(const QVariantList& notification) { return notification.at(4).toString(); }

class NotifierTest : public ::testing::Test {
protected:
    void serve(QStringList capabilities) {
        server.reset();
        server = std::make_unique<Server>(std::move(capabilities));
    }
    /// The bus answers in order: with its answer, everything has come that it said before.
    static void hearTheBus() {
        (void)QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("nobody.at.all"));
        QCoreApplication::processEvents();
    }
    [[nodiscard]] bool isShown(int count) {
        return QTest::qWaitFor([&] { return server->shown.size() == count; });
    }

    std::unique_ptr<Server> server;
};

TEST_F(NotifierTest, SaysWhoItIsAndReplacesItsOwn) {
    serve({QStringLiteral("body")});
    QtNotifier notifier;
    notifier.show("Title", "a < b & \xC3\xBC \xFF", Notifier::Urgency::critical);
    ASSERT_TRUE(isShown(1));
    const QVariantList first = server->shown.at(0);
    EXPECT_EQ(first.at(1).toUInt(), 0U);
    EXPECT_EQ(first.at(2).toString(), QStringLiteral("vantrell-zep"));
    EXPECT_EQ(first.at(3).toString(), QStringLiteral("Title"));
    EXPECT_EQ(bodyOf(first), QString::fromUtf8("a < b & \u00FC \uFFFD"));
    const auto hints = qdbus_cast<QVariantMap>(first.at(6));
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("vantrell-zep"));
    EXPECT_EQ(hints.value(QStringLiteral("urgency")).toInt(), 2);
    EXPECT_EQ(first.at(7).toInt(), 0) << "it stays";
    bool isClicked = false;
    notifier.onClicked([&] { isClicked = true; });
    server->click(7);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isClicked; }));
    notifier.show("Title", "next", Notifier::Urgency::normal);
    ASSERT_TRUE(isShown(2));
    EXPECT_EQ(server->shown.at(1).at(1).toUInt(), 7U);

    serve({QStringLiteral("body"), QStringLiteral("body-markup")});
    hearTheBus();
    notifier.show("<b>", "<a href=\"x\">&", Notifier::Urgency::normal);
    ASSERT_TRUE(isShown(1));
    const QVariantList anew = server->shown.front();
    EXPECT_EQ(anew.at(1).toUInt(), 0U) << "it owes nothing to a server that was started anew";
    EXPECT_EQ(anew.at(3).toString(), QStringLiteral("<b>"));
    EXPECT_EQ(bodyOf(anew), QStringLiteral("&lt;a href=&quot;x&quot;&gt;&amp;"));
    notifier.withdraw();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server->closed == QList<quint32>{7}; }));
}

}  // namespace
}  // namespace vantrell::test
