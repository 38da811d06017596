// SPDX-License-Identifier: MIT
#include "housekeeping/frmweeklyDelete.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"

namespace vantrell {

namespace {

void fill(QComboBox& list, const std::vector<std::string>& entries) {
    list.clear();
    for (const std::string& entry : entries) list.addItem(shownText(entry));
}

QLabel* makeCaption(const QString& text, QWidget* buddy) {
    auto* caption = new QLabel(text);
    caption->setBuddy(buddy);
    return caption;
}

}  // namespace

frmweeklyDelete::frmweeklyDelete(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmweeklyDelete"));
    setWindowTitle(tr("Weekly Auto-Delete Scheduler"));
    setModal(false);
    lstDay_ = makeList("lstDay", tr("Day of week"));
    lstHour_ = makeList("lstHour", tr("Hour"));
    lstMinute_ = makeList("lstMinute", tr("Minute"));
    optAM_ = makeHalf("optAM", tr("&AM"));
    optPM_ = makeHalf("optPM", tr("&PM"));
    lstDaysOld_ = makeList("lstDaysOld", tr("Days old greater than"));

    auto* time = new QGroupBox(tr("Time of Day that you want weekly deletions to occur"), this);
    time->setLayout(makeTimeRow());
    auto* grid = new QGridLayout;
    grid->setColumnStretch(0, 1);
    grid->setVerticalSpacing(2 * grid->verticalSpacing());
    addRow(*grid, tr("&Day of week you want auto-delete to happen"), lstDay_);
    grid->addWidget(time, grid->rowCount(), 0, 1, 2);
    addRow(*grid, tr("Days &Old Greater Than"), lstDaysOld_);

    auto* rows = new QVBoxLayout(this);
    rows->setSpacing(2 * rows->spacing());
    rows->addLayout(makeClockRow());
    rows->addLayout(grid);
    rows->addStretch();
    rows->addWidget(makeButtons());
}

QComboBox* frmweeklyDelete::makeList(const char* name, const QString& spokenName) {
    auto* list = new QComboBox(this);
    list->setObjectName(QString::fromLatin1(name));
    list->setAccessibleName(spokenName);
    list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return list;
}

QRadioButton* frmweeklyDelete::makeHalf(const char* name, const QString& caption) {
    auto* half = new QRadioButton(caption, this);
    half->setObjectName(QString::fromLatin1(name));
    return half;
}

void frmweeklyDelete::addRow(QGridLayout& grid, const QString& caption, QComboBox* list) {
    const int line = grid.rowCount();
    grid.addWidget(makeCaption(caption, list), line, 0);
    grid.addWidget(list, line, 1);
}

QLayout* frmweeklyDelete::makeClockRow() {
    lblClock_ = new QLabel(this);
    lblClock_->setObjectName(QStringLiteral("lblClock"));
    lblClock_->setTextFormat(Qt::PlainText);
    lblClock_->setAccessibleDescription(tr("The computer's date and time"));
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Current Date and Time provided by your PC's clock is:"), this));
    row->addWidget(lblClock_, 1);
    return row;
}

QLayout* frmweeklyDelete::makeTimeRow() {
    auto* row = new QHBoxLayout;
    row->addWidget(makeCaption(tr("&Hour"), lstHour_));
    row->addWidget(lstHour_);
    row->addSpacing(fontMetrics().averageCharWidth() * 2);
    row->addWidget(makeCaption(tr("&Minute"), lstMinute_));
    row->addWidget(lstMinute_);
    row->addSpacing(fontMetrics().averageCharWidth() * 2);
    row->addWidget(optAM_);
    row->addWidget(optPM_);
    row->addStretch();
    return row;
}

QWidget* frmweeklyDelete::makeButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setText(tr("OK"));
    QPushButton* cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    cancel->setText(tr("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmweeklyDelete::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmweeklyDelete::reject);
    return buttons;
}

void frmweeklyDelete::fillLists(const WeeklyLists& lists) {
    fill(*lstDay_, lists.days);
    fill(*lstHour_, lists.hours);
    fill(*lstMinute_, lists.minutes);
    fill(*lstDaysOld_, lists.daysOld);
}

void frmweeklyDelete::select(const WeeklyChoice& choice) {
    lstDay_->setCurrentIndex(choice.day);
    lstHour_->setCurrentIndex(choice.hour);
    lstMinute_->setCurrentIndex(choice.minute);
    lstDaysOld_->setCurrentIndex(choice.daysOld);
    (choice.isAm ? optAM_ : optPM_)->setChecked(true);
}

void frmweeklyDelete::setClock(const std::string& text) { lblClock_->setText(shownText(text)); }

void frmweeklyDelete::showCentred() {
    ensurePolished();
    adjustSize();
    const QWidget* beside = parentWidget() != nullptr ? parentWidget() : this;
    QRect place(QPoint(), size());
    place.moveCenter(beside->screen()->geometry().center());
    move(place.topLeft());
    show();
    bringToFront();
    lstDay_->setFocus();
}

void frmweeklyDelete::bringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void frmweeklyDelete::accept() {
    if (events_ == nullptr) return;
    events_->okPressed({lstDay_->currentIndex(), lstHour_->currentIndex(), lstMinute_->currentIndex(),
                        lstDaysOld_->currentIndex(), optAM_->isChecked()});
}

void frmweeklyDelete::reject() {
    if (events_ != nullptr) events_->cancelPressed();
}

}  // namespace vantrell
