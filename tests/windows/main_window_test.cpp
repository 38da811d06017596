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

TEST_F(MainWindowTest, ShowsPathsFromLeftToRight) {
    const auto drawn = [](const char* path) {
        ElidedLabel label(Qt::ElideMiddle);
        label.showBytes(path);
        label.resize(200, label.sizeHint().height());
        return label.grab().toImage();
    };
    const QImage path = drawn("/\u05D0/\u05D1/x");
    const QRect first(0, 0, window.fontMetrics().horizontalAdvance(QStringLiteral("/\u05D0")), path.height());
    EXPECT_EQ(path.copy(first), drawn("/\u05D0").copy(first)) << "the names change places";
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

}  // namespace vantrell::test
