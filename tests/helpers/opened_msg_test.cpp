// SPDX-License-Identifier: MIT
#include "helpers/OpenedMsg/opened_msg_window.h"
#include "platform/linux/unix_show_listener.h"
#include "whole/program_harness.h"

namespace vantrell::test {
namespace {

class OpenedMsgTest : public ProgramTest {
protected:
    void openMessage() {
        message.emplace(profile.data);
        message->start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return message->isVisible(); }, 20000));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&*message));
    }
    QPushButton* button(const char* name) const { return message->findChild<QPushButton*>(QLatin1String(name)); }
    [[nodiscard]] std::string headline() const {
        return message->findChild<QLabel*>(QStringLiteral("lblHeadline"))->text().toStdString();
    }

    std::optional<OpenedMsgWindow> message;
};

TEST_F(OpenedMsgTest, EnterBringsTheHiddenWindowBack) {
    startProgram();
    program->window().minimizeWindow();
    program->window().hideWindow();
    ASSERT_NO_FATAL_FAILURE(openMessage());
    EXPECT_EQ(headline(), "Vantrell is already running.");
    QTest::keyClick(&*message, Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&program->window()));
    EXPECT_TRUE(program->window().isVisible());
    EXPECT_FALSE(program->window().isMinimized());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !message->isVisible(); }));
}

TEST_F(OpenedMsgTest, SaysWhenThereIsNoProgram) {
    startProgram();
    ASSERT_NO_FATAL_FAILURE(openMessage());
    program.reset();
    button("cmdShow")->click();
    EXPECT_EQ(headline(), "No running Vantrell can be found.") << "it has ended meanwhile";
    ASSERT_NO_FATAL_FAILURE(openMessage());
    EXPECT_EQ(headline(), "No running Vantrell can be found.");
    EXPECT_FALSE(button("cmdShow")->isVisible());
    QTest::keyClick(&*message, Qt::Key_Return);
    EXPECT_FALSE(message->isVisible());
}

TEST_F(OpenedMsgTest, SaysWhenTheProgramDoesNotAnswer) {
    UnixShowListener stuck;
    ASSERT_TRUE(stuck.listen(profile.data, [] {}));
    ASSERT_NO_FATAL_FAILURE(openMessage());
    button("cmdShow")->click();
    EXPECT_FALSE(button("cmdShow")->isEnabled());
    EXPECT_TRUE(QTest::qWaitFor([&] { return button("cmdShow")->isEnabled(); }, 20000));
    EXPECT_EQ(headline(), "Vantrell is running, but it did not answer.");
    EXPECT_TRUE(message->isVisible());
}

}  // namespace
}  // namespace vantrell::test
