// SPDX-License-Identifier: MIT
#include "mainwindow/frmMain.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>

#include "core/scan_interval.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/x11_window.h"
#include "widgets/screen_room.h"
#include "widgets/wide_button.h"

namespace vantrell {

namespace {

// 11655 by 6780 and by 9600 twips, at 15 twips a pixel.
constexpr int kNormalWidth = 777;
constexpr int kNormalHeight = 452;
constexpr int kHeightWithActivity = 640;
// Window managers report late. A window that was minimized, then hidden and shown again may be told of the first only
// now, and must not be hidden because of it.
constexpr std::chrono::milliseconds kReportStandsAfter{100};

/// The pass shows SCANNING at each file, and the mode is shown twenty times a second. With small files the label would
/// flicker between the two texts.
constexpr std::chrono::milliseconds kScanningStays{1000};

QString textOf(Mode mode) {
    switch (mode) {
        case Mode::automatic:
            return QStringLiteral("Mode: Auto");
        case Mode::running:
            return QStringLiteral("Mode: Running");
        case Mode::scanning:
            return QStringLiteral("SCANNING");
        case Mode::stopped:
            break;
    }
    return QStringLiteral("Mode: Stopped");
}

ModeMark::Shape shapeOf(Mode mode) {
    if (mode == Mode::stopped) return ModeMark::Shape::square;
    return mode == Mode::automatic ? ModeMark::Shape::disc : ModeMark::Shape::triangle;
}

template <class Widget>
Widget* named(Widget* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

}  // namespace

frmMain::frmMain(const LineStore& lines, FileToolbox& toolbox) : activityLines_(lines) {
    setObjectName(QStringLiteral("frmMain"));
    MK11_ = named(new MK1(toolbox, this), QStringLiteral("MK11"));
    menus_ = new frmMenus(*menuBar(), this);
    makeControls();
    arrange();
    connectControls();
    cmdStartDir_->setFocus();
    setNormalSize();
    minimizedReport_.setSingleShot(true);
    minimizedReport_.setInterval(kReportStandsAfter);
    connect(&minimizedReport_, &QTimer::timeout, this, [this] {
        if (isMinimized() && isVisible() && listeners_) listeners_->window.minimized();
    });
}

frmMain::~frmMain() {
    frmMain::setWaitPointer(false);
    delete txtDebug_;  // it shows lines that go before it would
}

// In the order of the Tab key.
void frmMain::makeControls() {
    modeMark_ = named(new ModeMark(this), QStringLiteral("modeMark"));
    lblMode_ = named(new SteadyLabel(this), QStringLiteral("lblMode"));
    QFont bold = lblMode_->font();
    bold.setBold(true);
    lblMode_->setFont(bold);
    lblMode_->setAccessibleDescription(tr("Mode"));
    lblMode_->reserve({textOf(Mode::stopped), textOf(Mode::running), textOf(Mode::scanning)});
    lbSched_ = named(new ElidedLabel(Qt::ElideRight, this), QStringLiteral("lbSched"));
    lbSched_->prefer(QStringLiteral("Scheduled: Wednesday 12:59 PM  File Create Date > 14"));
    lbSched_->setAccessibleDescription(tr("Schedule of the weekly delete"));
    lblcurTime_ = named(new SteadyLabel(this), QStringLiteral("lblcurTime"));
    lblcurTime_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblcurTime_->setAccessibleDescription(tr("Time"));
    folders_ = named(new frmFolders(this), QStringLiteral("folders"));
    ctNEdit1_ = named(new MinutesField(1, kMostMinutes, this), QStringLiteral("ctNEdit1"));
    ctNEdit1_->setAccessibleName(tr("Minutes between two passes"));
    ctNEdit1_->setAccessibleDescription(tr("How often the Source folder is looked through"));
    Label2_ = named(new ElidedLabel(Qt::ElideRight, this), QStringLiteral("Label2"));
    Label2_->prefer(QStringLiteral("One or all of the folder  parameters are missing. Please check below."));
    Label2_->setAccessibleDescription(tr("Status"));
    progress_ = named(new frmProgress(this), QStringLiteral("progress"));
    makeButtons();
    txtDebug_ = named(new LineView(activityLines_, this), QStringLiteral("txtDebug"));
    txtDebug_->setAccessibleName(tr("Current log"));
    txtDebug_->setAccessibleDescription(tr("Every event since the program started, the newest at the end"));
    txtDebug_->followEnd();
    txtDebug_->hide();
}

void frmMain::makeButtons() {
    const auto make = [this](const QString& name, const QString& caption, const QString& description) {
        auto* button = named<QPushButton>(new WideButton(caption, this), name);
        button->setAccessibleDescription(description);
        button->setAutoDefault(true);
        return button;
    };
    cmdSched_ = make(QStringLiteral("cmdSched"), tr("&Weekly Auto-Delete Scheduler"),
                     tr("When old originals are deleted from the Done folder"));
    cmdStartDir_ = make(QStringLiteral("cmdStartDir"), tr("&Start"), tr("Starts processing"));
    cmdStopDir_ = make(QStringLiteral("cmdStopDir"), tr("S&top"), tr("Stops processing before the next file"));
    cmdExit_ = make(QStringLiteral("cmdExit"), tr("E&xit"), tr("Ends the program (Ctrl+Q)"));
}

void frmMain::arrange() {
    auto* centre = new QWidget(this);
    auto* column = new QVBoxLayout(centre);
    const int gap = column->spacing();
    column->addLayout(makeTopRow());
    column->addWidget(Label2_);  // some of its words are about what stands below
    column->addWidget(folders_);
    column->addSpacing(gap);
    column->addLayout(makeIntervalRow());
    column->addSpacing(gap);
    column->addWidget(progress_);
    column->addSpacing(gap);
    column->addLayout(makeButtonRow());
    auto* note = new QLabel(tr("NOTE: Select Red X to send to system tray and not close program."), this);
    column->addWidget(named(note, QStringLiteral("lblNote")));
    column->addWidget(txtDebug_, 1);
    column->addStretch(0);
    setCentralWidget(centre);

    auto* formStatusBar = named(new QStatusBar(this), QStringLiteral("formStatusBar"));
    formStatusBar->setAccessibleName(tr("Status bar"));
    panel1_ = named(new ElidedLabel(Qt::ElideMiddle, this), QStringLiteral("panel1"));
    panel1_->setAccessibleDescription(tr("Last event of importance"));
    panel1_->setContentsMargins(column->contentsMargins().left() - 2, 0, 0, 0);  // in line with what stands above
    formStatusBar->addWidget(panel1_, 1);
    warning_ = named(new ElidedLabel(Qt::ElideMiddle, this), QStringLiteral("lblWarning"));
    warning_->setAccessibleDescription(tr("Trouble that lasts"));
    QFont bold = warning_->font();
    bold.setBold(true);
    warning_->setFont(bold);
    warning_->hide();
    formStatusBar->addPermanentWidget(warning_, 1);
    setStatusBar(formStatusBar);
}

QLayout* frmMain::makeTopRow() {
    auto* row = new QHBoxLayout;
    row->addWidget(modeMark_);
    row->addWidget(lblMode_);
    row->addSpacing(fontMetrics().height());
    row->addWidget(lbSched_, 1);
    row->addWidget(lblcurTime_);
    return row;
}

QLayout* frmMain::makeIntervalRow() {
    auto* before = new QLabel(tr("&Process Fles every"), this);
    before->setBuddy(ctNEdit1_);
    auto* row = new QHBoxLayout;
    row->addWidget(before);
    row->addWidget(ctNEdit1_);
    row->addWidget(new QLabel(tr("minute(s)"), this));
    row->addStretch(1);
    row->addWidget(cmdSched_);
    return row;
}

QLayout* frmMain::makeButtonRow() {
    auto* row = new QHBoxLayout;
    row->addWidget(cmdStartDir_);
    row->addWidget(cmdStopDir_);
    row->addStretch(1);
    row->addWidget(cmdExit_);
    return row;
}

void frmMain::connectControls() {
    const auto tell = [this](QPushButton* button, void (*whom)(const MainWindowListeners&)) {
        connect(button, &QPushButton::clicked, this, [this, whom] {
            if (listeners_ != nullptr) whom(*listeners_);
        });
    };
    tell(cmdStartDir_, [](auto& to) { to.window.startPressed(); });
    tell(cmdStopDir_, [](auto& to) { to.window.stopPressed(); });
    tell(cmdExit_, [](auto& to) { to.window.exitPressed(); });
    connect(new QShortcut(Qt::CTRL | Qt::Key_Q, this), &QShortcut::activated, cmdExit_, &QPushButton::click);
    tell(cmdSched_, [](auto& to) { to.schedule.cmdSched(); });
    connect(folders_, &frmFolders::changePressed, this, &frmMain::chooseFolder);
    connect(folders_, &frmFolders::takeBackPressed, this, [this](FolderKind kind, const Path& lost) {
        if (listeners_) listeners_->fields.folderTakenBack(kind, lost);
    });
    connect(folders_, &frmFolders::includeSubfoldersClicked, this, [this](bool checked) {
        if (listeners_) listeners_->fields.includeSubfoldersClicked(checked);
    });
    connect(txtDebug_, &LineView::copyAsked, this,
            [this] { QGuiApplication::clipboard()->setText(txtDebug_->selectedText()); });
    connect(ctNEdit1_, &MinutesField::spun, this, [this](bool up, const QString& text) {
        if (listeners_) listeners_->fields.intervalSpun(up, text.toStdString());
    });
    connect(ctNEdit1_, &MinutesField::edited, this, [this](const QString& text) {
        if (listeners_) listeners_->fields.intervalEdited(text.toStdString());
    });
}

void frmMain::setListeners(const MainWindowListeners* listeners) {
    listeners_ = listeners;
    menus_->setListeners(listeners);
}

void frmMain::setCaption(const std::string& text) { setWindowTitle(shownText(text)); }

void frmMain::setLabel2(const std::string& text) { Label2_->showBytes(text); }

void frmMain::setPanel1(const std::string& text) { panel1_->showBytes(text); }

void frmMain::setWarning(const std::string& text) {
    warning_->showBytes(text);
    warning_->setVisible(!text.empty());
}

void frmMain::setMode(Mode mode) {
    if (mode == Mode::scanning) scanningIsShown_.setRemainingTime(kScanningStays);
    if (mode_ == mode && !lblMode_->text().isEmpty()) return;
    const bool wouldFlicker = mode == Mode::running && mode_ == Mode::scanning;
    if (wouldFlicker && !scanningIsShown_.hasExpired()) return;
    mode_ = mode;
    lblMode_->setText(textOf(mode));
    modeMark_->showShape(shapeOf(mode));
}

void frmMain::setClock(const std::string& text) {
    if (text == clock_) return;
    clock_ = text;
    lblcurTime_->setText(shownText(text));
}

void frmMain::setSchedule(const std::string& text) { lbSched_->showBytes(text); }

void frmMain::setStartEnabled(bool enabled) { enableButton(*cmdStartDir_, *cmdStopDir_, enabled); }

void frmMain::setStopEnabled(bool enabled) { enableButton(*cmdStopDir_, *cmdStartDir_, enabled); }

// When a button is disabled, Qt gives its focus to the next one. That may be Exit, and the operator's Enter key would
// then end the program. The focus goes to the other one of Start and Stop instead, which is enabled a moment later.
void frmMain::enableButton(QPushButton& button, QPushButton& other, bool enabled) {
    if (button.isEnabled() == enabled) return;
    if (!enabled && focusWidget() == &button) {
        button.clearFocus();
        focusGoesTo_ = &other;
    }
    button.setEnabled(enabled);
    if (QPushButton* waiting = focusGoesTo_; waiting != nullptr && waiting->isEnabled()) {
        focusGoesTo_ = nullptr;
        if (focusWidget() == nullptr) waiting->setFocus();
    }
}

void frmMain::setWaitPointer(bool waiting) {
    if (std::exchange(waits_, waiting) == waiting) return;
    if (waiting) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
}

void frmMain::setCurrentFile(const std::string& name) { progress_->setCurrentFile(name); }

void frmMain::setLastFile(const std::string& name) { progress_->setLastFile(name); }

void frmMain::setTotalFiles(std::uint64_t count) { progress_->setTotalFiles(count); }

void frmMain::setProcessedCount(std::int32_t count) { progress_->setProcessedCount(count); }

void frmMain::setPassProgress(std::uint64_t done, std::uint64_t total) { progress_->setPassProgress(done, total); }

void frmMain::setFileProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal) {
    progress_->setFileProgress(bytesDone, bytesTotal);
}

void frmMain::setStopping(bool stopping) { progress_->setStopping(stopping); }
void frmMain::clearProgress() { progress_->clear(); }

void frmMain::setFolder(FolderKind kind, const Path& folder) { folders_->setFolder(kind, folder); }

void frmMain::offerFolder(FolderKind kind, const Path& lost) { folders_->offerFolder(kind, lost); }

void frmMain::setMinutes(const std::string& text) { ctNEdit1_->showText(shownText(text)); }

void frmMain::setStartupEntry(StartupEntry::State state) { menus_->setStartupEntry(state); }

void frmMain::showSettings(const SettingsRecord& settings) {
    menus_->showSettings(settings);
    folders_->setIncludeSubfolders(settings.IncludeSubfolders);
}

void frmMain::activityJoined() {
    activityLines_.linesJoined();
    txtDebug_->linesJoined();
}

bool frmMain::isActivityShown() const { return !txtDebug_->isHidden(); }

void frmMain::setActivityShown(bool shown) {
    txtDebug_->setVisible(shown);
    resizeAtLeast({width(), shown ? kHeightWithActivity : kNormalHeight});
}

void frmMain::showWindow() {
    if (!isMinimized()) appearInNormalState(*this);
    show();
}

void frmMain::hideWindow() { hide(); }

void frmMain::minimizeWindow() {
    if (!isMinimized()) showMinimized();
}

void frmMain::closeWindow() {
    closesForGood_ = true;
    MK11_->withdraw();
    delete about_;
    close();
}

void frmMain::setNormalState() { setWindowState(windowState() & ~Qt::WindowMinimized); }

bool frmMain::isMinimized() const { return QMainWindow::isMinimized(); }

void frmMain::setNormalSize() {
    resizeAtLeast({kNormalWidth, isActivityShown() ? kHeightWithActivity : kNormalHeight});
}

void frmMain::resizeAtLeast(QSize size) {
    if (isMaximized() || isFullScreen()) return;
    centralWidget()->layout()->activate();
    layout()->activate();
    const int usual = std::min(sizeHint().width(), screen()->availableGeometry().width());
    resize(size.expandedTo(minimumSizeHint()).expandedTo({usual, 0}));
    keepOnScreen(*this);
}

void frmMain::bringToFront() {
    raise();
    activateWindow();
}

void frmMain::showAbout(const AboutFacts& facts) {
    if (!about_) {
        about_ = new frmAbout(facts, this);
        connect(about_, &frmAbout::systemInfoPressed, this, [this] {
            if (listeners_) listeners_->about.systemInfoPressed();
        });
        connect(about_, &frmAbout::copyDiagnosticsPressed, this, [this] {
            if (listeners_)
                about_->copyDiagnostics(
                    QString::fromStdString(listeners_->about.diagnosticsWanted(toolkitText().toStdString())));
        });
    }
    about_->show();
    about_->raise();
    about_->activateWindow();
}

void frmMain::closeEvent(QCloseEvent* event) {
    const bool isCloseBox = event->spontaneous() && !closesForGood_ && !qGuiApp->isSavingSession();
    event->setAccepted(!isCloseBox);
    if (isCloseBox && listeners_) listeners_->window.closeBoxPressed();
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange) return;
    minimizedReport_.start();
    if (listeners_ != nullptr && isSeen()) listeners_->window.appeared();
}

void frmMain::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (listeners_ != nullptr) listeners_->window.appeared();
}

void frmMain::keyPressEvent(QKeyEvent* event) {
    const bool closesLog = event->key() == Qt::Key_Escape && isActivityShown() && listeners_ != nullptr;
    closesLog ? listeners_->log.viewCurrentLogChosen() : QMainWindow::keyPressEvent(event);
}

void frmMain::chooseFolder(FolderKind kind) {
    // While a picker is open, pressing the button again only brings that picker to the front.
    if (!MK11_->isPicking() && (!listeners_ || !listeners_->fields.folderPressed(kind))) return;
    MK11_->setParentForm(this);
    MK11_->setShowCreate(true);
    MK11_->setCaption(tr("Choose the %1").arg(folders_->nameOf(kind)).toStdString());
    MK11_->setTitle("Select Current Folder or Create New Folder");
    MK11_->setInitDir(folders_->choosingBegins(kind));
    MK11_->SaveBrowse([this, kind](const Path& folder) {
        if (listeners_) listeners_->fields.folderChosen(kind, folder);
    });
}

}  // namespace vantrell
