// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_delete_dialog.h"

#include <gtest/gtest.h>

#include "support/weekly_bench.h"

namespace vantrell::test {
namespace {

class RecordingWeeklyWindow final : public WeeklyDeleteWindow {
public:
    void fillLists(const WeeklyLists& entries) override { lists = entries; }
    void select(const WeeklyChoice& selected) override { choice = selected; }
    void setClock(const std::string& text) override { clock = text; }
    void showCentred() override { isShown = true; }
    void bringToFront() override { ++broughtToFront; }
    void closeWindow() override { isShown = false; }

    WeeklyLists lists;
    WeeklyChoice choice;
    std::string clock;
    bool isShown = false;
    int broughtToFront = 0;
};

class WeeklyDialogTest : public ::testing::Test {
protected:
    [[nodiscard]] SettingsRecord saved() {
        ProgramState state;
        state.SettingsFilePath = weekly.bench.state.SettingsFilePath;
        SettingsFile file(state, weekly.bench.files, weekly.bench.clock);
        EXPECT_EQ(file.loadSettings(), SettingsFile::Loaded::whole);
        return state.settings;
    }
    WeeklyBench weekly;
    RecordingWeeklyWindow window;
    ManualTimer timClock;
    WeeklyDeleteDialog dialog{
        {weekly.bench.state, window, weekly.bench.settings, weekly.bench.mode, weekly.bench.clock, timClock},
        [this] { weekly.weekly->clockTick(); }};
};

TEST_F(WeeklyDialogTest, OpensPausedWithWhatIsStored) {
    weekly.settings().WeeklyDeleteAmPm.clear();
    weekly.bench.mode.TurnOnTimRun();
    dialog.cmdSched();
    EXPECT_TRUE(window.isShown && dialog.isOpen());
    EXPECT_EQ(weekly.bench.mode.mode(), Mode::stopped);
    EXPECT_EQ(saved().WeeklyDeleteAmPm, "PM");
    EXPECT_EQ(window.choice, (WeeklyChoice{1, 6, 5, 0, false}));
    EXPECT_EQ(window.clock, generalDateText(weekly.bench.clock.time));
    EXPECT_TRUE(timClock.isEnabled());
    EXPECT_EQ(window.lists.days.at(0) + window.lists.days.at(7), "-None-Sunday");
    EXPECT_EQ(window.lists.hours.front() + window.lists.hours.back(), "112");
    EXPECT_EQ(window.lists.minutes.at(9) + window.lists.minutes.back(), "0959");
    EXPECT_EQ(window.lists.daysOld.front() + window.lists.daysOld.back(), "714");
    dialog.cmdSched();
    EXPECT_EQ(window.broughtToFront, 1);
    dialog.abort();
    EXPECT_FALSE(window.isShown || timClock.isEnabled());
    EXPECT_EQ(weekly.bench.mode.mode(), Mode::stopped) << "nothing is resumed";
}

TEST_F(WeeklyDialogTest, OkTakesSavesShowsAndResumes) {
    dialog.cmdSched();
    dialog.okPressed({7, 11, 0, 7, true});
    EXPECT_EQ(weekly.bench.window.schedule, "Scheduled: Sunday 12:0 AM  File Create Date > 14");
    EXPECT_EQ(saved(), weekly.settings());
    EXPECT_EQ(weekly.bench.mode.mode(), Mode::automatic) << "even when it was stopped before";
    EXPECT_FALSE(window.isShown || dialog.isOpen() || timClock.isEnabled());
    dialog.cmdSched();
    EXPECT_EQ(window.choice, (WeeklyChoice{7, 11, 0, 7, true}));
    const SettingsRecord before = weekly.settings();
    dialog.cancelPressed();
    EXPECT_EQ(weekly.settings(), before);
    EXPECT_EQ(weekly.bench.mode.mode(), Mode::automatic);
    dialog.cmdSched();
    dialog.okPressed({0, 0, 0, 0, false});
    EXPECT_EQ(weekly.bench.window.schedule, "");
}

TEST_F(WeeklyDialogTest, WhatIsNotInAListSelectsNothingAndStays) {
    for (const int days : {6, 15, 0}) {
        weekly.settings().WeeklyDeleteDaysOld = static_cast<std::int16_t>(days);
        weekly.settings().WeeklyDeleteHour = 0;
        dialog.cmdSched();
        EXPECT_EQ(window.choice, (WeeklyChoice{1, -1, 5, -1, false}));
        dialog.okPressed(window.choice);
        EXPECT_EQ(weekly.settings().WeeklyDeleteDaysOld, days);
        EXPECT_EQ(weekly.settings().WeeklyDeleteHour, 0);
    }
}

}  // namespace
}  // namespace vantrell::test
