// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>
#include <algorithm>

#include "activitylog/frmHistory.h"
#include "activitylog/frmHistoryInfo.h"
#include "platform/files/posix_file_reading.h"
#include "platform/files/posix_toolbox.h"
#include "platform/linux/kernel_flush.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_event_loop.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {

using Names = std::vector<std::string>;

class HistoryWindowsTest : public testing::Test {
protected:
    void SetUp() override {
        mainWindow.setGeometry(90, 70, 300, 200);
        mainWindow.show();
    }
    void write(const std::string& name, const std::string& text) const { writeFile(logs + "/" + name, text); }
    void openList() {
        list.open();
        load = list.findChild<QPushButton*>(QStringLiteral("LoadHistory"));
        grid = list.findChild<QTableView*>(QStringLiteral("GridDetails"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return load->isVisible(); }));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&list));
    }
    void read(const std::string& name, int lines) {
        reading.openHistory(name);
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown()->rows() == lines; }));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&reading));
    }
    void clickRow(int row, int column) const {
        const QRect cell = grid->visualRect(grid->model()->index(row - 1, column));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    }
    [[nodiscard]] Names listed() const {
        Names names;
        for (int row = 0; row < grid->model()->rowCount(); ++row)
            names.push_back(grid->model()->index(row, 0).data().toString().toStdString());
        return names;
    }
    [[nodiscard]] std::vector<int> checkedRows() const {
        std::vector<int> rows;
        for (int row = 0; row < grid->model()->rowCount(); ++row)
            if (grid->model()->index(row, 1).data(Qt::CheckStateRole) == Qt::Checked) rows.push_back(row + 1);
        return rows;
    }
    [[nodiscard]] LineView* shown() const { return reading.findChild<LineView*>(); }
    [[nodiscard]] std::string line(int row) const {
        return shown()->model()->index(row, 0).data().toString().toStdString();
    }
    [[nodiscard]] std::string textOf(const char* name) const {
        return reading.findChild<QLabel*>(QString::fromLatin1(name))->text().toStdString();
    }
    [[nodiscard]] QLineEdit* findField() const { return reading.findChild<QLineEdit*>(); }
    bool showsRead(const std::string& text) {
        return QTest::qWaitFor([&] { return textOf("lblRead") == text; });
    }
    bool showsFound(const std::string& text) {
        return QTest::qWaitFor([&] { return textOf("lblFound") == text; }, 30'000);
    }

    TemporaryFolder folder;
    std::string logs = folder.makeFolder("logs");
    std::unique_ptr<FlushService> flush = makeKernelFlush();
    SystemClock clock;
    QtEventLoop loop{clock, *flush};
    PosixToolbox toolbox{loop, clock};
    PosixFileReading files;
    QWidget mainWindow;
    frmHistoryInfo reading{logs, files, loop, mainWindow};
    frmHistory list{logs, toolbox, loop, reading, mainWindow};
    QTableView* grid = nullptr;
    QPushButton* load = nullptr;
};

TEST_F(HistoryWindowsTest, ListsEveryFileAndOpensTheLast) {
    std::filesystem::remove(logs);
    openList();
    EXPECT_EQ(listed(), Names{});
    QTest::mouseClick(load, Qt::LeftButton);
    EXPECT_TRUE(list.isVisible()) << "there is nothing to load";
    list.close();
    folder.makeFolder("logs/below");
    for (const char* name : {"b", "a", ".hidden", "M\xFCller.txt"}) write(name, "one\r\n");
    openList();
    EXPECT_EQ(listed(), (Names{".hidden", "M\\xFCller.txt", "a", "b"}));
    EXPECT_EQ(grid->currentIndex().row(), 3);
    EXPECT_TRUE(checkedRows().empty());
    QTest::mouseClick(load, Qt::LeftButton);
    EXPECT_FALSE(list.isVisible());
    EXPECT_TRUE(showsRead("b: 1 line"));
    EXPECT_EQ(list.windowTitle(), QStringLiteral("History"));
    EXPECT_EQ(reading.windowTitle(), QStringLiteral("History Log"));
    for (const QWidget* window : {static_cast<QWidget*>(&list), static_cast<QWidget*>(&reading)}) {
        EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        EXPECT_EQ(window->frameGeometry().topLeft(), mainWindow.frameGeometry().topLeft());
    }
}

TEST_F(HistoryWindowsTest, ChecksOneRowByMouseAndKeyboard) {
    for (const char* name : {"a", "b", "c"}) write(name, std::string(name) + "\r\n");
    openList();
    for (const int row : {3, 1, 1}) {
        clickRow(row, row % 2);
        EXPECT_EQ(checkedRows(), std::vector<int>{row});
    }
    std::filesystem::remove(logs + "/a");
    QTest::mouseClick(load, Qt::LeftButton);
    EXPECT_TRUE(list.isVisible()) << "the file has gone";
    clickRow(3, 0);
    QTest::keyClick(grid, Qt::Key_Up);
    EXPECT_EQ(checkedRows(), std::vector<int>{2}) << "the mark goes with what will be opened";
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_FALSE(list.isVisible());
    EXPECT_TRUE(showsRead("b: 1 line"));
    EXPECT_EQ(line(0), "b");
    openList();
    EXPECT_EQ(listed(), (Names{"b", "c"})) << "built anew when it opens again";
}

TEST_F(HistoryWindowsTest, FindsWhileTyping) {
    write("a", "alpha\r\nbeta\r\nALPHABET\r\ngamma\r\n");
    read("a", 4);
    QTest::keyClick(shown(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(findField()->hasFocus());
    QTest::keyClicks(findField(), QStringLiteral("alpha"));
    EXPECT_TRUE(showsFound("1 of 2 lines"));
    EXPECT_EQ(shown()->currentIndex().row(), 0);
    QTest::keyClick(findField(), Qt::Key_Return);
    EXPECT_EQ(shown()->currentIndex().row(), 2);
    QTest::keyClick(findField(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(shown()->currentIndex().row(), 0);
    QTest::keyClick(findField(), Qt::Key_Escape);
    EXPECT_TRUE(shown()->hasFocus());
    QTest::keyClick(shown(), Qt::Key_F3);
    EXPECT_EQ(shown()->currentIndex().row(), 2);
    findField()->setText(QStringLiteral("nothing"));
    EXPECT_TRUE(showsFound("Not found"));
    EXPECT_FALSE(reading.findChild<QPushButton*>(QStringLiteral("cmdNext"))->isEnabled());
}

TEST_F(HistoryWindowsTest, ShowsALargeLogAtOnceAndStaysAlive) {
    constexpr int kLines = 500'000;
    std::string text;
    for (int i = 0; i < kLines; ++i) text += "11/16/2026 08:41:03 PM Encryped:  /srv/in/" + std::to_string(i) + "\r\n";
    write("large", text);
    const auto copied = static_cast<qsizetype>(text.size()) - kLines;  // line feeds alone
    qint64 longest = 0;
    QElapsedTimer since;
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, &heartbeat, [&] { longest = std::max(longest, since.restart()); });
    heartbeat.start(5);
    QElapsedTimer opening;
    opening.start();
    since.start();
    reading.openHistory("large");
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown()->rows() > 1000; }));
    const qint64 untilFirst = opening.elapsed();
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown()->rows() == kLines; }, 30'000));
    const int width = shown()->fontMetrics().horizontalAdvance(QString::fromStdString(line(kLines - 1)));
    EXPECT_GE(shown()->visualRect(shown()->model()->index(0, 0)).width(), width) << "its end is out of reach";
    findField()->setText(QStringLiteral("/srv/in/499999"));
    ASSERT_TRUE(showsFound("1 of 1 line"));
    EXPECT_EQ(shown()->currentIndex().row(), kLines - 1);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_C}) QTest::keyClick(shown(), key, Qt::ControlModifier);
    const auto isCopied = [&] { return QGuiApplication::clipboard()->text().size() == copied; };
    ASSERT_TRUE(QTest::qWaitFor(isCopied, 30'000));
    shown()->verticalScrollBar()->setValue(kLines / 2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown()->lineInHand() > 0; }));
    heartbeat.stop();
    EXPECT_LT(untilFirst, 1500) << "meant to be 100; the machine may be busy";
    EXPECT_LT(longest, 1500) << "meant to be 100; the machine may be busy";
}

}  // namespace vantrell::test
