// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_delete_dialog.h"

#include <utility>

#include "base/date_text.h"
#include "housekeeping/weekly_schedule.h"

namespace vantrell {

namespace {

constexpr std::int32_t kClockMs = 100;
constexpr int kDays = 8;
constexpr int kHours = 12;
constexpr int kMinutes = 60;
constexpr int kTwoDigits = 10;

WeeklyLists makeLists() {
    WeeklyLists lists;
    lists.days.emplace_back("-None-");
    for (int day = 1; day < kDays; ++day) lists.days.emplace_back(weekdayName(day));
    for (int hour = 1; hour <= kHours; ++hour) lists.hours.push_back(std::to_string(hour));
    for (int minute = 0; minute < kMinutes; ++minute)
        lists.minutes.push_back((minute < kTwoDigits ? "0" : "") + std::to_string(minute));
    for (int days = kLeastDaysOld; days <= kMostDaysOld; ++days) lists.daysOld.push_back(std::to_string(days));
    return lists;
}

// A stored value that is not in the list, from a damaged file for example, selects nothing.
int indexOf(int value, int first, int count) { return value < first || value >= first + count ? -1 : value - first; }

WeeklyChoice choiceFrom(const SettingsRecord& settings) {
    return {indexOf(settings.WeeklyDeleteDay, 0, kDays), indexOf(settings.WeeklyDeleteHour, 1, kHours),
            indexOf(settings.WeeklyDeleteMinute, 0, kMinutes),
            indexOf(settings.WeeklyDeleteDaysOld, kLeastDaysOld, kMostDaysOld - kLeastDaysOld + 1),
            settings.WeeklyDeleteAmPm == "AM"};
}

// A list without a selection leaves its setting unchanged.
void take(std::int16_t& field, int index, int first) {
    if (index >= 0) field = static_cast<std::int16_t>(index + first);
}

}  // namespace

void WeeklyDeleteDialog::cmdSched() {
    if (isOpen_) return p_.window.bringToFront();
    isOpen_ = true;
    p_.mode.hold();
    p_.timClock.setInterval(kClockMs);
    p_.timClock.setEnabled(true);
    timClock_Timer();
    WeeklySaveConfig();
    p_.window.fillLists(makeLists());
    p_.window.select(choiceFrom(p_.state.settings));
    p_.window.showCentred();
}

void WeeklyDeleteDialog::timClock_Timer() { p_.window.setClock(generalDateText(p_.clock.now())); }

void WeeklyDeleteDialog::okPressed(const WeeklyChoice& choice) {
    if (!isOpen_) return;
    SettingsRecord& settings = p_.state.settings;
    take(settings.WeeklyDeleteDay, choice.day, 0);
    take(settings.WeeklyDeleteHour, choice.hour, 1);
    take(settings.WeeklyDeleteMinute, choice.minute, 0);
    take(settings.WeeklyDeleteDaysOld, choice.daysOld, kLeastDaysOld);
    settings.WeeklyDeleteAmPm = choice.isAm ? "AM" : "PM";
    WeeklySaveConfig();
    p_.weekly.clockTick();
    close();
}

void WeeklyDeleteDialog::cancelPressed() {
    if (isOpen_) close();
}

void WeeklyDeleteDialog::WeeklySaveConfig() {
    if (p_.state.settings.WeeklyDeleteAmPm.empty()) p_.state.settings.WeeklyDeleteAmPm = "PM";
    (void)p_.settings.save();
}

// A pass under way decides itself how it goes on.
void WeeklyDeleteDialog::close() {
    abort();
    if (!p_.state.PassInProgress) p_.mode.TurnOnTimRun();
}

void WeeklyDeleteDialog::abort() {
    if (!std::exchange(isOpen_, false)) return;
    p_.mode.letGo();
    p_.timClock.setEnabled(false);
    p_.window.closeWindow();
}

}  // namespace vantrell
