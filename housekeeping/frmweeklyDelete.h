// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>

#include "housekeeping/weekly_delete_window.h"

namespace vantrell {

/// The settings window of the weekly delete. It lays out the controls, shows what it is told and forwards what the
/// operator does.
class frmweeklyDelete final : public QDialog, public WeeklyDeleteWindow {
    Q_OBJECT

public:
    explicit frmweeklyDelete(QWidget* parent = nullptr);

    /// Who is told what the operator does; null: nobody. Must outlive the window or be taken back before.
    void setEvents(WeeklyDeleteEvents* events) { events_ = events; }

    void fillLists(const WeeklyLists& lists) override;
    void select(const WeeklyChoice& choice) override;
    void setClock(const std::string& text) override;
    void showCentred() override;
    void bringToFront() override;
    void closeWindow() override { hide(); }

    // Return, Escape and the close box end here.
    void accept() override;
    void reject() override;

private:
    [[nodiscard]] QComboBox* makeList(const char* name, const QString& spokenName);
    [[nodiscard]] QRadioButton* makeHalf(const char* name, const QString& caption);
    [[nodiscard]] QLayout* makeClockRow();
    [[nodiscard]] QLayout* makeTimeRow();
    [[nodiscard]] QWidget* makeButtons();
    void addRow(QGridLayout& grid, const QString& caption, QComboBox* list);

    WeeklyDeleteEvents* events_ = nullptr;
    QLabel* lblClock_ = nullptr;
    QComboBox* lstDay_ = nullptr;
    QComboBox* lstHour_ = nullptr;
    QComboBox* lstMinute_ = nullptr;
    QComboBox* lstDaysOld_ = nullptr;
    QRadioButton* optAM_ = nullptr;
    QRadioButton* optPM_ = nullptr;
};

}  // namespace vantrell
