// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <optional>

#include "app/program.h"
#include "core/data_folder.h"
#include "helpers/OpenedMsg/opened_msg_window.h"
#include "platform/files/posix_data_files.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/unix_show_listener.h"
#include "platform/qt/qt_timers.h"
#include "rig/temporary_folder.h"
#include "support/environment.h"

namespace vantrell::test {
namespace {

class OpenedMsgTest : public testing::Test {
protected:
    /// The whole program on a fresh profile.
    void runProgram() {
        program.emplace(clock, timers, dataFiles);
        ASSERT_TRUE(program->start());
    }
    void openMessage() {
        message.emplace(appFolderBelow(folder.path()));
        message->start();
        ASSERT_TRUE(QTest::qWaitFor([&] { return message->isVisible(); }, 20000));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&*message));
    }
    QPushButton* button(const char* name) const { return message->findChild<QPushButton*>(QLatin1String(name)); }
    [[nodiscard]] std::string headline() const {
        return message->findChild<QLabel*>(QStringLiteral("lblHeadline"))->text().toStdString();
    }

    TemporaryFolder folder;
    Environment profile{"ALLUSERSPROFILE", folder.path().c_str()};
    Environment config{"XDG_CONFIG_HOME", (folder / "config").c_str()};
    SystemClock clock;
    QtTimers timers;
    PosixDataFiles dataFiles;
    std::optional<Program> program;
    std::optional<OpenedMsgWindow> message;
};

TEST_F(OpenedMsgTest, EnterBringsTheHiddenWindowBack) {
    ASSERT_NO_FATAL_FAILURE(runProgram());
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
    ASSERT_NO_FATAL_FAILURE(runProgram());
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
    std::filesystem::create_directories(appFolderBelow(folder.path()));
    UnixShowListener stuck;
    ASSERT_TRUE(stuck.listen(appFolderBelow(folder.path()), [] {}));
    ASSERT_NO_FATAL_FAILURE(openMessage());
    button("cmdShow")->click();
    EXPECT_FALSE(button("cmdShow")->isEnabled());
    EXPECT_TRUE(QTest::qWaitFor([&] { return button("cmdShow")->isEnabled(); }, 20000));
    EXPECT_EQ(headline(), "Vantrell is running, but it did not answer.");
    EXPECT_TRUE(message->isVisible());
}

}  // namespace
}  // namespace vantrell::test
