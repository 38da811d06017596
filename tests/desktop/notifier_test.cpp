// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "platform/qt/qt_notifier.h"

namespace vantrell::test {
namespace {

/// A message bus of the test's own; it starts no services by itself.
class Bus {
public:
    Bus() {
        QFile configuration(folder_.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly)) return;
        configuration.write("<busconfig><type>session</type><listen>unix:dir=" + folder_.path().toUtf8() +
                            "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow send_destination=\"*\"/>"
                            "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>");
        configuration.close();
        process_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                       QStringLiteral("--config-file"), configuration.fileName()});
        if (process_.waitForReadyRead()) address_ = QString::fromUtf8(process_.readLine()).trimmed();
    }
    ~Bus() {
        process_.terminate();
        process_.waitForFinished();
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    [[nodiscard]] QString address() const { return address_; }

private:
    QTemporaryDir folder_;
    QProcess process_;
    QString address_;
};

/// A notification server on the bus, by a connection of its own.
class Server : public QDBusVirtualObject {
public:
    Server(const QString& address, QStringList capabilities, quint32 firstId)
        : connection_(QDBusConnection::connectToBus(address, QStringLiteral("server"))),
          capabilities_(std::move(capabilities)),
          nextId_(firstId) {
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

    QList<QVariantList> shown;
    QList<quint32> closed;

private:
    QDBusConnection connection_;
    QStringList capabilities_;
    quint32 nextId_;
};

QString bodyOf(const QVariantList& notification) { return notification.at(4).toString(); }

class NotifierTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        bus_ = new Bus;
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus_->address().toUtf8());
    }
    static void TearDownTestSuite() { delete bus_; }

    void serve(QStringList capabilities, quint32 firstId = 7) {
        server.reset();
        server = std::make_unique<Server>(bus_->address(), std::move(capabilities), firstId);
    }
    /// The bus answers in order: with its answer, everything has come that it said before.
    static void hearTheBus() {
        (void)QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("nobody.at.all"));
        QCoreApplication::processEvents();
    }
    [[nodiscard]] bool isShown(int count) {
        return QTest::qWaitFor([&] { return server->shown.size() == count; });
    }

    inline static Bus* bus_ = nullptr;
    std::unique_ptr<Server> server;
};

TEST_F(NotifierTest, SaysWhoItIsAndReplacesItsOwn) {
    serve({QStringLiteral("body")});
    QtNotifier notifier;
    notifier.show("Title", "a < b & \xC3\xBC \xFF");
    ASSERT_TRUE(isShown(1));
    const QVariantList first = server->shown.at(0);
    EXPECT_EQ(first.at(1).toUInt(), 0U);
    EXPECT_EQ(first.at(2).toString(), QStringLiteral("vantrell-zep"));
    EXPECT_EQ(first.at(3).toString(), QStringLiteral("Title"));
    EXPECT_EQ(bodyOf(first), QString::fromUtf8("a < b & \u00FC \uFFFD"));
    const auto hints = qdbus_cast<QVariantMap>(first.at(6));
    EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("vantrell-zep"));
    EXPECT_EQ(hints.value(QStringLiteral("urgency")).toInt(), 1);
    notifier.show("Title", "next");
    ASSERT_TRUE(isShown(2));
    EXPECT_EQ(server->shown.at(1).at(1).toUInt(), 7U);
}

TEST_F(NotifierTest, EscapesWhatAServerWouldTakeForMarkup) {
    serve({QStringLiteral("body"), QStringLiteral("body-markup")});
    QtNotifier notifier;
    notifier.show("<b>", "<a href=\"x\">&");
    ASSERT_TRUE(isShown(1));
    EXPECT_EQ(server->shown.at(0).at(3).toString(), QStringLiteral("<b>"));
    EXPECT_EQ(bodyOf(server->shown.at(0)), QStringLiteral("&lt;a href=&quot;x&quot;&gt;&amp;"));
}

TEST_F(NotifierTest, WithdrawsEvenWhatIsStillOnItsWay) {
    serve({QStringLiteral("body")});
    QtNotifier notifier;
    notifier.show("Title", "one");
    ASSERT_TRUE(isShown(1));
    notifier.withdraw();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server->closed == QList<quint32>{7}; }));
    notifier.show("Title", "taken back at once");
    notifier.withdraw();
    notifier.show("Title", "two");
    notifier.show("Title", "three");
    ASSERT_TRUE(QTest::qWaitFor([&] { return bodyOf(server->shown.back()) == QStringLiteral("three"); }));
    notifier.withdraw();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server->closed == QList<quint32>({7, 8}); }));
}

TEST_F(NotifierTest, OwesNothingToAServerThatWasStartedAnew) {
    serve({QStringLiteral("body")}, 40);
    QtNotifier notifier;
    notifier.show("Title", "one");
    ASSERT_TRUE(isShown(1));
    serve({QStringLiteral("body"), QStringLiteral("body-markup")}, 50);
    hearTheBus();
    notifier.show("Title", "&");
    ASSERT_TRUE(isShown(1));
    EXPECT_EQ(bodyOf(server->shown.front()), QStringLiteral("&amp;"));
    EXPECT_EQ(server->shown.front().at(1).toUInt(), 0U);
}

TEST_F(NotifierTest, DoesNothingWithoutAServer) {
    QtNotifier notifier;
    notifier.show("Title", "nobody sees this");
    notifier.withdraw();
    hearTheBus();
    serve({QStringLiteral("body")});
    hearTheBus();
    notifier.show("Title", "seen");
    ASSERT_TRUE(isShown(1));
    EXPECT_EQ(bodyOf(server->shown.front()), QStringLiteral("seen"));
}

}  // namespace
}  // namespace vantrell::test

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
