// SPDX-License-Identifier: MIT
#include <QApplication>
#include <csignal>

#include "whole/program_harness.h"

namespace vantrell::test {

class Closing : public ProgramTest {
protected:
    int runUntilEnd(const std::function<void()>& how) {
        QTimer::singleShot(0, &program->window(), how);
        return QApplication::exec();
    }
};

TEST_F(Closing, ByTheCloseBoxIsRefusedWhileNothingIsDone) {
    startProgram();
    ASSERT_TRUE(isStopped());
    EXPECT_FALSE(pressCloseBox(program->window()));
    EXPECT_EQ(answer(QMessageBox::Ok),
              "You have slected to minimize but the program is not scanning for file. Program will not minimize.");
    EXPECT_TRUE(program->window().isVisible());
    EXPECT_FALSE(program->window().isMinimized());
    EXPECT_TRUE(hasLogged(" Loaded\r\n"));
}

TEST_F(Closing, ByTheUsualKey) {
    startProgram();
    EXPECT_EQ(runUntilEnd([this] { QTest::keyClick(&program->window(), Qt::Key_Q, Qt::ControlModifier); }), 0);
    EXPECT_EQ(profile.saved().SourceFolder, profile.in);
}

TEST_F(Closing, BySignalIsTheSame) {
    SignalSource requests;
    startProgram();
    program->endWhenAsked(requests);
    click("cmdStartDir");
    ASSERT_TRUE(waitFor([&] { return openBoxes().size() == 1; }));
    EXPECT_EQ(runUntilEnd([] { std::raise(SIGTERM); }), 0);
    EXPECT_TRUE(openBoxes().isEmpty()) << "a question does not hold up the end of a session";
    EXPECT_TRUE(hasLogged(" Loaded\r\n"));
    program.reset();
}

}  // namespace vantrell::test
