// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QLayout>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include "core/main_window.h"
#include "folderpicker/mk1.h"
#include "mainwindow/frmAbout.h"
#include "mainwindow/frmFolders.h"
#include "mainwindow/frmMenus.h"
#include "mainwindow/frmProgress.h"
#include "mainwindow/main_window_listeners.h"
#include "widgets/elided_label.h"
#include "widgets/line_view.h"
#include "widgets/minutes_field.h"
#include "widgets/mode_mark.h"
#include "widgets/steady_label.h"
#include "widgets/stored_lines.h"

namespace vantrell {

/// The main window. It lays out the controls, shows what it is told and forwards what the operator does.
class frmMain final : public QMainWindow, public MainWindow {
    Q_OBJECT

public:
    /// `lines` keeps the lines of the activity box; nobody else may append to it. Both must outlive the window.
    frmMain(const LineStore& lines, FileToolbox& toolbox);
    ~frmMain() override;

    /// Who is told what the operator does; null: nobody. Must outlive the window or be taken back before.
    void setListeners(const MainWindowListeners* listeners);

    void setCaption(const std::string& text) override;
    void setLabel2(const std::string& text) override;
    void setPanel1(const std::string& text) override;
    void setWarning(const std::string& text) override;
    void setMode(Mode mode) override;
    void setClock(const std::string& text) override;
    void setSchedule(const std::string& text) override;
    void setStartEnabled(bool enabled) override;
    void setStopEnabled(bool enabled) override;
    void setWaitPointer(bool waiting) override;

    void setCurrentFile(const std::string& name) override;
    void setLastFile(const std::string& name) override;
    void setTotalFiles(std::uint64_t count) override;
    void setProcessedCount(std::int32_t count) override;
    void setPassProgress(std::uint64_t done, std::uint64_t total) override;
    void setFileProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal) override;
    void setStopping(bool stopping) override;
    void clearProgress() override;

    void setFolder(FolderKind kind, const Path& folder) override;
    void offerFolder(FolderKind kind, const Path& lost) override;
    void setMinutes(const std::string& text) override;
    void finishEditing() override { ctNEdit1_->finishEditing(); }
    void showSettings(const SettingsRecord& settings) override;
    void setStartupEntry(StartupEntry::State state) override;

    void activityJoined() override;
    [[nodiscard]] bool isActivityShown() const override;
    void setActivityShown(bool shown) override;

    void showWindow() override;
    void hideWindow() override;
    void minimizeWindow() override;
    void closeWindow() override;
    void setNormalState() override;
    [[nodiscard]] bool isMinimized() const override;
    [[nodiscard]] bool isSeen() const override { return isVisible() && !QMainWindow::isMinimized(); }
    void setNormalSize() override;
    void bringToFront() override;
    void showAbout(const AboutFacts& facts) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeControls();
    void makeButtons();
    void arrange();
    [[nodiscard]] QLayout* makeTopRow();
    [[nodiscard]] QLayout* makeIntervalRow();
    [[nodiscard]] QLayout* makeButtonRow();
    void connectControls();

    void chooseFolder(FolderKind kind);
    void enableButton(QPushButton& button, QPushButton& other, bool enabled);
    void resizeAtLeast(QSize size);

    StoredLines activityLines_;
    const MainWindowListeners* listeners_ = nullptr;
    bool closesForGood_ = false;
    bool waits_ = false;
    QTimer minimizedReport_;

    frmMenus* menus_ = nullptr;
    Mode mode_ = Mode::stopped;
    QDeadlineTimer scanningIsShown_;
    ModeMark* modeMark_ = nullptr;
    SteadyLabel* lblMode_ = nullptr;
    ElidedLabel* lbSched_ = nullptr;
    SteadyLabel* lblcurTime_ = nullptr;
    std::string clock_;
    frmFolders* folders_ = nullptr;
    MinutesField* ctNEdit1_ = nullptr;
    ElidedLabel* Label2_ = nullptr;
    frmProgress* progress_ = nullptr;
    QPushButton* cmdStartDir_ = nullptr;
    QPushButton* cmdStopDir_ = nullptr;
    QPushButton* cmdExit_ = nullptr;
    QPushButton* cmdSched_ = nullptr;
    QPushButton* focusGoesTo_ = nullptr;
    LineView* txtDebug_ = nullptr;
    ElidedLabel* panel1_ = nullptr;
    ElidedLabel* warning_ = nullptr;
    MK1* MK11_ = nullptr;
    QPointer<frmAbout> about_;
};

}  // namespace vantrell
