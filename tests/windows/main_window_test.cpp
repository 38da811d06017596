// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

#include "rig/temporary_folder.h"
#include "windows/window_harness.h"

namespace vantrell::test {

TEST_F(MainWindowTest, NeverHandsTheFocusToExit) {
    window.setStopEnabled(false);
    find<QPushButton>("cmdStartDir")->setFocus();
    window.setStartEnabled(false);
    EXPECT_EQ(window.focusWidget(), nullptr);
    window.setStopEnabled(true);
    EXPECT_EQ(window.focusWidget(), find<QPushButton>("cmdStopDir"));
}

TEST_F(MainWindowTest, TellsATypedNumberOnce) {
    window.setMinutes("5");
    auto* field = find<MinutesField>("ctNEdit1");
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("12"));
    EXPECT_TRUE(events.seen.empty()) << "not finished yet";
    QTest::keyClick(field, Qt::Key_Return);
    QTest::keyClick(field, Qt::Key_Return);
    find<QPushButton>("cmdStartDir")->setFocus();
    EXPECT_EQ(events.seen, (Seen{"edited 12"}));

    field->setFocus();
    QTest::keyClicks(field, QStringLiteral("7"));
    QTest::keyClick(field, Qt::Key_Escape);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(field->text(), QStringLiteral("12"));
    EXPECT_EQ(events.seen.size(), 1U);
}

TEST_F(MainWindowTest, LongTextsMoveNothing) {
    window.setMode(Mode::stopped);
    window.setClock("20:41:03");
    QCoreApplication::sendPostedEvents();
    const QSize size = window.size();
    const QRect start = find<QWidget>("cmdStartDir")->geometry();
    const QRect schedule = find<QWidget>("lbSched")->geometry();
    const std::string deep = "/srv/" + std::string(3000, 'x') + "/in";
    window.setFolder(FolderKind::source, deep);
    window.setLabel2(deep);
    window.setPanel1(deep);
    window.setSchedule(deep);
    window.setCurrentFile(deep);
    window.setProcessedCount(2147483647);
    window.setMode(Mode::automatic);
    ASSERT_TRUE(showsText("lblCurNumFilesProcessed", "2147483647"));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(window.size(), size);
    EXPECT_EQ(find<QWidget>("cmdStartDir")->geometry(), start);
    EXPECT_EQ(find<QWidget>("lbSched")->geometry(), schedule);
}

TEST_F(MainWindowTest, ShowsPathsInReadableFormAndWholeInTheTip) {
    auto* label = find<QLabel>("lblSourcePath");
    window.setFolder(FolderKind::source, "/srv/M\xFCller\n<b>/" + std::string(300, 'x'));
    ASSERT_TRUE(showsText("lblSourcePath", "/srv/M\\xFCller\\x0A<b>/" + std::string(300, 'x')));
    QHelpEvent asked(QEvent::ToolTip, {1, 1}, label->mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(label, &asked);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("&lt;b&gt;"))) << "taken for formatting";
    EXPECT_TRUE(QToolTip::text().contains(QString(300, QLatin1Char('x'))));
}

TEST_F(MainWindowTest, TheModeDoesNotFlickerBetweenSmallFiles) {
    window.setMode(Mode::running);
    const QRect schedule = find<QWidget>("lbSched")->geometry();
    for (int file = 0; file < 20; ++file) {
        window.setMode(Mode::scanning);
        window.setMode(Mode::running);
        QCoreApplication::processEvents();
        EXPECT_EQ(textOf("lblMode"), "SCANNING");
        EXPECT_EQ(find<QWidget>("lbSched")->geometry(), schedule);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] {
        window.setMode(Mode::running);
        return textOf("lblMode") == "Mode: Running";
    }));
}

TEST_F(MainWindowTest, ShowsTheWorkWithoutBeingBusyWithIt) {
    QElapsedTimer time;
    time.start();
    for (std::uint64_t file = 1; file <= 10'000; ++file) {
        window.setCurrentFile("file " + std::to_string(file));
        window.setFileProgress(file, 20'000);
        window.setPassProgress(file, 10'000);
        window.repaint();
    }
    EXPECT_LT(time.elapsed(), 500);
    EXPECT_TRUE(showsText("lblCurrentProcessingFile", "file 10000"));
    EXPECT_EQ(find<QProgressBar>("prgFile")->text(), QStringLiteral("50 %"));
    EXPECT_EQ(find<QProgressBar>("prgPass")->text(), QStringLiteral("10000 of 10000 files"));
    window.clearProgress();
    EXPECT_TRUE(QTest::qWaitFor([&] { return find<QProgressBar>("prgFile")->text().isEmpty(); }));
    EXPECT_TRUE(showsText("lblCurrentProcessingFile", ""));
}

TEST(TimeLeft, IsSaidInTheUnitThatMatters) {
    EXPECT_EQ(timeLeftText(1, 100, 500), QString());
    EXPECT_EQ(timeLeftText(0, 100, 5000), QString());
    EXPECT_EQ(timeLeftText(50, 100, 3000), QStringLiteral("3 s left"));
    EXPECT_EQ(timeLeftText(10, 100, 20'000), QStringLiteral("3 min left"));
    EXPECT_EQ(timeLeftText(1, 131, 60'000), QStringLiteral("2 h 10 min left"));
    EXPECT_EQ(timeLeftText(1, UINT64_MAX, 60'000), QStringLiteral("more than 100 h left"));
}

}  // namespace vantrell::test
