// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include "housekeeping/frmweeklyDelete.h"
#include "housekeeping/weekly_delete_dialog.h"
#include "support/weekly_bench.h"

namespace vantrell::test {
namespace {

/// The settings window with what decides behind it.
class WeeklyWindowTest : public ::testing::Test {
protected:
    void SetUp() override { window.setEvents(&dialog); }
    void TearDown() override { window.setEvents(nullptr); }
    void open() {
        dialog.cmdSched();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    template <class Widget>
    Widget* find(const char* name) {
        return window.findChild<Widget*>(QString::fromLatin1(name));
    }
    void key(const char* name, Qt::Key pressed) { QTest::keyClick(find<QComboBox>(name), pressed); }
    void press(const char* name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    std::string shown() {
        std::string text;
        for (const char* name : {"lstDay", "lstHour", "lstMinute", "lstDaysOld"})
            text += find<QComboBox>(name)->currentText().toStdString() + ' ';
        return text + (find<QRadioButton>("optPM")->isChecked() ? "PM" : "AM");
    }
    [[nodiscard]] SettingsRecord saved() {
        ProgramState state;
        state.SettingsFilePath = weekly.bench.state.SettingsFilePath;
        SettingsFile file(state, weekly.bench.files, weekly.bench.clock);
        EXPECT_EQ(file.loadSettings(), SettingsFile::Loaded::whole);
        return state.settings;
    }
    void expectClosed(Mode mode) {
        EXPECT_FALSE(window.isVisible() || dialog.isOpen() || timClock.isEnabled());
        EXPECT_EQ(weekly.bench.engine.mode.mode(), mode);
    }

    WeeklyBench weekly;
    frmweeklyDelete window;
    HandDrivenTimer timClock;
    WeeklyDeleteDialog dialog{{weekly.bench.state, window, weekly.bench.engine.settings, weekly.bench.engine.mode,
                               weekly.bench.clock, timClock, *weekly.weekly}};
};

TEST_F(WeeklyWindowTest, OpensPausedWithWhatIsStored) {
    weekly.settings().WeeklyDeleteAmPm.clear();
    weekly.bench.engine.mode.TurnOnTimRun();
    open();
    EXPECT_EQ(weekly.bench.engine.mode.mode(), Mode::stopped);
    EXPECT_EQ(saved().WeeklyDeleteAmPm, "PM");
    EXPECT_EQ(shown(), "Monday 7 05 7 PM");
    EXPECT_EQ(find<QLabel>("lblClock")->text().toStdString(), generalDateText(weekly.bench.clock.time));
    EXPECT_TRUE(timClock.isEnabled());
    EXPECT_FALSE(window.isModal());
    dialog.abort();
    expectClosed(Mode::stopped);
}

TEST_F(WeeklyWindowTest, OkTakesSavesShowsAndResumes) {
    weekly.settings().WeeklyDeleteAmPm = "AM";
    open();
    for (const char* name : {"lstDay", "lstHour", "lstDaysOld"}) key(name, Qt::Key_End);
    EXPECT_EQ(shown(), "Sunday 12 05 14 AM");
    QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return find<QRadioButton>("optPM")->isChecked(); }));
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_EQ(weekly.bench.window.schedule, "Scheduled: Sunday 12:5 PM  File Create Date > 14");
    EXPECT_EQ(saved(), weekly.settings());
    expectClosed(Mode::automatic);
    open();
    EXPECT_EQ(shown(), "Sunday 12 05 14 PM");
    for (const char* name : {"lstHour", "lstDaysOld"}) key(name, Qt::Key_Home);
    key("lstMinute", Qt::Key_End);
    EXPECT_EQ(shown(), "Sunday 1 59 7 PM");
    key("lstDay", Qt::Key_Home);
    press("cmdOK");
    EXPECT_EQ(weekly.bench.window.schedule, "");
}

TEST_F(WeeklyWindowTest, EveryOtherWayOutIsCancel) {
    const SettingsRecord before = weekly.settings();
    const std::function<void()> ways[] = {[this] { press("cmdCancel"); },
                                          [this] { QTest::keyClick(&window, Qt::Key_Escape); },
                                          [this] { window.close(); }};
    for (const auto& leave : ways) {
        open();
        key("lstDay", Qt::Key_End);
        leave();
        EXPECT_EQ(weekly.settings(), before);
        expectClosed(Mode::automatic);
    }
}

TEST_F(WeeklyWindowTest, WhatIsNotInAListSelectsNothingAndStays) {
    for (const int days : {6, 15, 0}) {
        setSchedule(weekly.settings(), 1, 0, 5, "PM", days);
        open();
        EXPECT_EQ(shown(), "Monday  05  PM");
        press("cmdOK");
        EXPECT_EQ(weekly.settings().WeeklyDeleteDaysOld, days);
        EXPECT_EQ(weekly.settings().WeeklyDeleteHour, 0);
    }
}

TEST_F(WeeklyWindowTest, TabGoesFromTopToBottom) {
    weekly.settings().WeeklyDeleteAmPm = "AM";
    open();
    for (const char* name : {"lstDay", "lstHour", "lstMinute", "optAM", "lstDaysOld", "cmdOK", "cmdCancel"}) {
        EXPECT_EQ(window.focusWidget()->objectName().toStdString(), name);
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    }
}

}  // namespace
}  // namespace vantrell::test
