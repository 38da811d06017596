// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

#include "activitylog/history_find.h"
#include "activitylog/history_list.h"
#include "activitylog/history_reader.h"
#include "core/ending.h"
#include "widgets/elided_label.h"
#include "widgets/line_view.h"
#include "widgets/throttle.h"

namespace vantrell {

/// The window in which log files are read. It shows the first lines at once and takes in the others while the reader
/// reads; a file that is opened while it is still open follows the earlier ones.
class frmHistoryInfo final : public QWidget,
                             public HistoryOpener,
                             public Endable,
                             private HistoryReaderView,
                             private HistoryFindView {
    Q_OBJECT

public:
    /// All of them must outlive the window; it opens where `mainWindow` stands.
    frmHistoryInfo(Path logFolder, const FileReading& files, EventLoop& loop, QWidget& mainWindow);
    ~frmHistoryInfo() override;

    void openHistory(const Path& fileName) override;
    void abort() override { close(); }
    /// Appends the lines of a file of the log folder.
    void readtheHistoryfile(const Path& fileName) { reader_.readtheHistoryfile(fileName); }

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void readingWentOn() override;
    void takeCopy(std::string text) override;
    void refuseCopy() override;
    void showMatch(std::size_t line) override;
    void showFindState(const FindState& state) override;

    void makeControls();
    void makeFindControls();
    void arrange();
    void connectControls();
    void addKey(const QKeySequence& key, void (HistoryFind::*step)());

    void showLines();
    void showReading();
    void showFound();
    void startFinding();

    QWidget& mainWindow_;
    HistoryReader reader_;
    HistoryFind find_;
    FindState findState_;

    LineView* txtScrollingHistory_ = nullptr;
    QLineEdit* txtFind_ = nullptr;
    QPushButton* cmdPrevious_ = nullptr;
    QPushButton* cmdNext_ = nullptr;
    QLabel* lblFound_ = nullptr;
    ElidedLabel* lblRead_ = nullptr;
    QPushButton* cmdExit_ = nullptr;
    Throttle showFound_;
};

}  // namespace vantrell
