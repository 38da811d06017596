// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QElapsedTimer>
#include <QScrollBar>

#include "base/display_text.h"
#include "windows/window_harness.h"

namespace vantrell::test {

class ActivityBoxTest : public MainWindowTest {
protected:
    void SetUp() override {
        MainWindowTest::SetUp();
        box = find<LineView>("txtDebug");
    }
    void append(const std::string& line) {
        lines.append(displayText(line));
        window.activityJoined();
    }
    void append(int first, int last) {
        for (int line = first; line <= last; ++line) append("line " + std::to_string(line));
    }
    [[nodiscard]] int shownRows() const { return box->model()->rowCount(); }
    [[nodiscard]] bool isAtEnd() const {
        return box->verticalScrollBar()->value() == box->verticalScrollBar()->maximum();
    }

    LineView* box = nullptr;
};

TEST_F(ActivityBoxTest, FollowsTheEndUntilTheReaderScrolls) {
    QScrollBar* bar = box->verticalScrollBar();
    append(1, 100);
    window.setActivityShown(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar->maximum() > 0 && shownRows() == 100 && isAtEnd(); }));
    bar->setValue(10);
    append(101, 200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shownRows() == 200 && bar->maximum() > 100; }));
    EXPECT_EQ(bar->value(), 10);
    bar->setValue(bar->maximum());
    append(201, 300);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->maximum() > 200 && isAtEnd(); }));
}

TEST_F(ActivityBoxTest, CopiesTheSelectedLinesInTheirOrder) {
    window.setActivityShown(true);
    append("first M\xFCller");
    append(2, 5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shownRows() == 5; }));
    for (const int row : {3, 0})
        box->selectionModel()->select(box->model()->index(row, 0), QItemSelectionModel::Select);
    QTest::keyClick(box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("first M\\xFCller\nline 4"));
}

TEST_F(ActivityBoxTest, LongLinesCanBeScrolledIntoSight) {
    window.setActivityShown(true);
    append("short");
    append(std::string(2000, 'W'));
    const int needed = box->fontMetrics().horizontalAdvance(QString(2000, QLatin1Char('W')));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return box->horizontalScrollBar()->maximum() + box->viewport()->width() >= needed; }));
}

}  // namespace vantrell::test
