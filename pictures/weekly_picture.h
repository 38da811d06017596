// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>

#include "housekeeping/frmweeklyDelete.h"

namespace vantrell::test {

/// Draws the window of the weekly delete: "weekly-delete", and without anything selected as "weekly-delete-none".
inline void drawWeeklyDelete(const std::function<void(QWidget&, const QString&)>& save) {
    frmweeklyDelete window;
    WeeklyLists lists{{"-None-", "Monday", "Wednesday"}, {"7", "12"}, {"00", "05"}, {"7", "14"}};
    window.fillLists(lists);
    window.setClock("11/24/2026 8:41:03 PM");
    window.select({1, 0, 1, 0, false});
    window.showCentred();
    save(window, QStringLiteral("weekly-delete"));
    window.select({-1, -1, -1, -1, true});
    save(window, QStringLiteral("weekly-delete-none"));
}

}  // namespace vantrell::test
