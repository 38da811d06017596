// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>

#include "whole/windows_harness.h"
#include "widgets/line_view.h"

namespace vantrell::test {

using Names = std::vector<std::string>;

/// The list of past logs and the window in which they are read.
class HistoryWindows : public Windows {
protected:
    void SetUp() override {
        startProgram();
        ASSERT_TRUE(isStopped());
        std::filesystem::remove_all(logs);
        std::filesystem::create_directory(logs);
    }
    void write(const std::string& name, const std::string& text) const { writeFile(logs + "/" + name, text); }
    OtherWindow openList() {
        trigger("mnuHsitoryDaily");
        OtherWindow list = opened("frmHistory");
        EXPECT_TRUE(waitFor([&] { return list.find<QWidget>("LoadHistory")->isVisible(); }));
        EXPECT_TRUE(QTest::qWaitForWindowActive(&list.window));
        grid = list.find<QTableView>("GridDetails");
        return list;
    }
    OtherWindow read(const std::string& name, const std::string& text) {
        write(name, text);
        openList().click("LoadHistory");
        OtherWindow reading = opened("frmHistoryInfo");
        view = reading.find<LineView>("txtScrollingHistory");
        field = reading.find<QLineEdit>("txtFind");
        return reading;
    }
    /// The names, and an "x" behind the one that is marked.
    [[nodiscard]] Names listed() const {
        Names names;
        for (int row = 0; row < grid->model()->rowCount(); ++row) {
            names.push_back(grid->model()->index(row, 0).data().toString().toStdString());
            if (grid->model()->index(row, 1).data(Qt::CheckStateRole) == Qt::Checked) names.back() += " x";
        }
        return names;
    }
    void clickRow(int row, int column) const {
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualRect(grid->model()->index(row, column)).center());
    }
    static bool shows(const OtherWindow& window, const char* label, const std::string& text) {
        return waitFor([&] { return window.find<QLabel>(label)->text().toStdString() == text; });
    }

    const std::string logs = profile.data + "/Daily Activity Logs";
    QTableView* grid = nullptr;
    LineView* view = nullptr;
    QLineEdit* field = nullptr;
};

TEST_F(HistoryWindows, OpenTheMarkedOneOfAllFiles) {
    std::filesystem::remove(logs);
    const OtherWindow list = openList();
    EXPECT_EQ(listed(), Names{});
    list.click("LoadHistory");
    EXPECT_TRUE(list.window.isVisible()) << "there is nothing to load";
    list.window.close();
    std::filesystem::create_directories(logs + "/below");
    for (const char* name : {"b", "a", ".hidden", "M\xFCller.txt"}) write(name, "one\r\n");
    openList();
    EXPECT_EQ(listed(), (Names{".hidden", "M\\xFCller.txt", "a", "b"}));
    EXPECT_EQ(grid->currentIndex().row(), 3);
    for (const int column : {0, 1, 1}) {
        clickRow(1, column);
        EXPECT_EQ(listed(), (Names{".hidden", "M\\xFCller.txt x", "a", "b"}));
    }
    std::filesystem::remove(logs + "/M\xFCller.txt");
    list.click("LoadHistory");
    EXPECT_TRUE(list.window.isVisible()) << "the file has gone";
    clickRow(3, 0);
    QTest::keyClick(grid, Qt::Key_Up);
    EXPECT_EQ(listed()[2], "a x") << "the mark goes with what will be opened";
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_FALSE(list.window.isVisible());
    EXPECT_TRUE(shows(opened("frmHistoryInfo"), "lblRead", "a: 1 line"));
}

TEST_F(HistoryWindows, FindWhileTyping) {
    const OtherWindow reading = read("a", "alpha\r\nbeta\r\nALPHABET\r\ngamma\r\n");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&reading.window));
    QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(field->hasFocus());
    QTest::keyClicks(field, QStringLiteral("alpha"));
    EXPECT_TRUE(shows(reading, "lblFound", "1 of 2 lines"));
    EXPECT_EQ(view->currentIndex().row(), 0);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(view->currentIndex().row(), 2);
    QTest::keyClick(field, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(view->currentIndex().row(), 0);
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(view->hasFocus());
    QTest::keyClick(view, Qt::Key_F3);
    EXPECT_EQ(view->currentIndex().row(), 2);
    field->setText(QStringLiteral("nothing"));
    EXPECT_TRUE(shows(reading, "lblFound", "Not found"));
    EXPECT_FALSE(reading.find<QPushButton>("cmdNext")->isEnabled());
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_FALSE(reading.window.isVisible());
}

TEST_F(HistoryWindows, StayOnTheScreenAndAsTheyWereLeft) {
    const auto isOnTheScreen = [](const QWidget& window) {
        const QRect room = window.screen()->availableGeometry();
        return waitFor([&] { return room.contains(window.frameGeometry()); }, 5);
    };
    QWidget& main = program->window();
    const QPoint edge = main.screen()->availableGeometry().bottomRight() - QPoint(60, 60);
    main.move(edge);
    OtherWindow reading = read("a", "line\r\n");
    EXPECT_TRUE(isOnTheScreen(reading.window));
    reading.window.resize(600, 410);
    reading.window.close();
    trigger("mnviewCL");
    EXPECT_TRUE(isOnTheScreen(main)) << "the last lines are out of sight";
    QTest::keyClick(find<QWidget>("txtDebug"), Qt::Key_Escape);
    EXPECT_FALSE(find<QWidget>("txtDebug")->isVisible());
    main.move(7, 9);
    exitProgram();
    startOnProfile();
    EXPECT_EQ(program->window().pos(), QPoint(7, 9));
    EXPECT_EQ(read("a", "line\r\n").window.size(), QSize(600, 410));
}

TEST_F(HistoryWindows, FindAndCopyInALargeLog) {
    constexpr int kLines = 100'000;
    std::string text;
    for (int i = 0; i < kLines; ++i) text += "11/16/2026 08:41:03 PM Encryped:  /srv/in/" + std::to_string(i) + "\r\n";
    const OtherWindow reading = read("large", text);
    ASSERT_TRUE(waitFor([&] { return view->rows() == kLines; }));
    field->setText(QStringLiteral("/srv/in/99999"));
    EXPECT_TRUE(shows(reading, "lblFound", "1 of 1 line"));
    EXPECT_EQ(view->currentIndex().row(), kLines - 1);
    const int width = view->fontMetrics().horizontalAdvance(view->currentIndex().data().toString());
    EXPECT_GE(view->visualRect(view->currentIndex()).width(), width) << "its end is out of reach";
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_C}) QTest::keyClick(view, key, Qt::ControlModifier);
    const auto copied = static_cast<qsizetype>(text.size()) - kLines;  // line feeds alone
    EXPECT_TRUE(waitFor([&] { return QGuiApplication::clipboard()->text().size() == copied; }));
    reading.window.close();
    EXPECT_EQ(view->rows(), 0);
}

}  // namespace vantrell::test
