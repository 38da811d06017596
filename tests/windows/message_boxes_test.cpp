// SPDX-License-Identifier: MIT
#include "platform/qt/qt_message_boxes.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>
#include <optional>

#include "rig/hand_cranked_loop.h"
#include "windows/window_harness.h"

namespace vantrell::test {

class MessageBoxesTest : public MainWindowTest {
protected:
    void ask(const Box& box) {
        tasks.start(keepAnswer(this, box));
        loop.settle();
    }
    static Task<void> keepAnswer(MessageBoxesTest* test, Box box) {
        Pending<Answer> question = test->boxes->ask(box);
        test->asked = question.ticket();
        test->answer = co_await question;
    }

    HandCrankedLoop loop;
    std::optional<QtMessageBoxes> boxes{std::in_place, loop.queue(), &window};
    std::optional<Answer> answer;
    Ticket<Answer> asked;
    TaskGroup tasks{loop.queue()};
    const Box question{"Running ", "Would you like\r\n\r\nto stop /srv/a\nb?", Buttons::yesNo, false};
};

TEST_F(MessageBoxesTest, AsksBesideTheWindow) {
    ask(question);
    ASSERT_EQ(openBoxes().size(), 1);
    QMessageBox* box = openBoxes().front();
    EXPECT_FALSE(box->isModal());
    EXPECT_EQ(box->windowTitle(), QStringLiteral("Running "));
    EXPECT_EQ(box->text(), QStringLiteral("Would you like\n\nto stop /srv/a\\x0Ab?"));
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(box->button(QMessageBox::Yes), box->defaultButton());
    window.bringToFront();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    boxes->showAgain(asked);
    EXPECT_TRUE(QTest::qWaitForWindowActive(box));
    loop.settle();
    EXPECT_FALSE(answer.has_value());
    QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
    loop.settle();
    EXPECT_EQ(answer, Answer::yes);
    EXPECT_TRUE(openBoxes().empty());
}

TEST_F(MessageBoxesTest, EscapeAndTheCloseBoxAnswerNothing) {
    for (const bool escape : {true, false}) {
        ask(question);
        escape ? QTest::keyClick(openBoxes().front(), Qt::Key_Escape) : (void)openBoxes().front()->close();
        loop.settle();
        EXPECT_EQ(answer, Answer::dismissed);
        answer.reset();
    }
    ask({"", "Sure?", Buttons::yesNo, true});
    EXPECT_EQ(openBoxes().front()->windowTitle(), QStringLiteral("Vantrell"));
    QTest::keyClick(openBoxes().front(), Qt::Key_Return);
    loop.settle();
    EXPECT_EQ(answer, Answer::no) << "the default that was asked for";
}

TEST_F(MessageBoxesTest, InformsOnceUntilItIsRead) {
    const Box news{"", "There is no active password.", Buttons::ok, false};
    boxes->inform(news);
    boxes->inform(news);
    ASSERT_EQ(openBoxes().size(), 1);
    const auto* text = openBoxes().front()->findChild<QTextEdit*>();
    EXPECT_GE(text->width(), text->fontMetrics().horizontalAdvance(text->toPlainText())) << "a short line stays one";
    boxes->inform({"", "Something else.", Buttons::ok, false});
    EXPECT_EQ(openBoxes().size(), 2);
    for (QMessageBox* box : openBoxes()) QTest::keyClick(box, Qt::Key_Return);
    EXPECT_TRUE(openBoxes().empty());
    boxes->inform(news);
    EXPECT_EQ(openBoxes().size(), 1);
}

TEST_F(MessageBoxesTest, ShowTheTextAsItIsAndFitOnTheScreen) {
    const QString path = QStringLiteral("/srv/") + QString(20'000, QLatin1Char('W'));
    boxes->inform({"", path.toStdString(), Buttons::ok, false});
    QMessageBox* box = openBoxes().front();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(box));
    auto* text = box->findChild<QTextEdit*>();
    EXPECT_TRUE(box->screen()->availableGeometry().contains(box->frameGeometry()));
    EXPECT_LE(text->document()->idealWidth(), text->viewport()->width()) << "its end is out of sight";
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_C}) QTest::keyClick(text, key, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(text)->text(QAccessible::Name), path);
}

TEST_F(MessageBoxesTest, DrawTheirSignSharpOnAFineScreen) {
    boxes->inform(question);
    auto* sign = qobject_cast<QGridLayout*>(openBoxes().front()->layout())->itemAtPosition(0, 0)->widget();
    QImage fine(sign->size() * 2, QImage::Format_RGB32);
    fine.setDevicePixelRatio(2);
    sign->render(&fine);
    EXPECT_NE(fine, fine.scaled(sign->size()).scaled(fine.size())) << "each point is only made larger";
}

TEST_F(MessageBoxesTest, CanBeAnsweredWhileAWindowHoldsUpTheMainOne) {
    auto* modal = new QDialog(&window);
    modal->open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(modal));
    ask(question);
    const auto activeBox = [] { return qobject_cast<QMessageBox*>(QApplication::activeWindow()); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return activeBox() != nullptr; }));
    QMessageBox* box = activeBox();
    EXPECT_TRUE(box->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QPushButton* yes = qobject_cast<QPushButton*>(box->button(QMessageBox::Yes));
    // Through the window, as the mouse does it: events for a widget go past what holds it up.
    QTest::mouseClick(box->windowHandle(), Qt::LeftButton, {}, yes->mapTo(box, yes->rect().center()));
    loop.settle();
    EXPECT_EQ(answer, Answer::yes);
    EXPECT_TRUE(QTest::qWaitForWindowActive(modal)) << "the operator was working there";
}

}  // namespace vantrell::test
