// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vantrell {

/// What is selected in the window: indexes into the lists from 0 on, -1 where nothing is.
struct WeeklyChoice {
    int day = -1;
    int hour = -1;
    int minute = -1;
    int daysOld = -1;
    bool isAm = false;

    bool operator==(const WeeklyChoice&) const = default;
};

/// The entries of the four lists. Texts are UTF-8.
struct WeeklyLists {
    std::vector<std::string> days;
    std::vector<std::string> hours;
    std::vector<std::string> minutes;
    std::vector<std::string> daysOld;
};

/// What the window of the weekly delete can be told to show.
class WeeklyDeleteWindow {
public:
    WeeklyDeleteWindow() = default;
    WeeklyDeleteWindow(const WeeklyDeleteWindow&) = delete;
    WeeklyDeleteWindow& operator=(const WeeklyDeleteWindow&) = delete;
    virtual ~WeeklyDeleteWindow() = default;

    virtual void fillLists(const WeeklyLists& lists) = 0;
    virtual void select(const WeeklyChoice& choice) = 0;
    /// The date and time that the computer's clock says.
    virtual void setClock(const std::string& text) = 0;
    /// In the middle of the screen, without holding up other windows.
    virtual void showCentred() = 0;
    virtual void bringToFront() = 0;
    virtual void closeWindow() = 0;
};

/// What the operator does in it. The window forwards it and decides nothing; it stays until it is told to close.
class WeeklyDeleteEvents {
public:
    WeeklyDeleteEvents() = default;
    WeeklyDeleteEvents(const WeeklyDeleteEvents&) = delete;
    WeeklyDeleteEvents& operator=(const WeeklyDeleteEvents&) = delete;
    virtual ~WeeklyDeleteEvents() = default;

    virtual void okPressed(const WeeklyChoice& choice) = 0;
    /// Cancel, Escape or the close box.
    virtual void cancelPressed() = 0;
};

}  // namespace vantrell
