// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>
#include <memory>

#include "base/path.h"
#include "platform/show_request.h"

class QLabel;
class QPushButton;

namespace vantrell {

/// Tells who started the program a second time that it runs already, where to find it, and offers to show its window.
class OpenedMsgWindow final : public QDialog {
    Q_OBJECT

public:
    explicit OpenedMsgWindow(Path appFolder);
    ~OpenedMsgWindow() override;

    /// Looks for the running program, which may only just be starting, and then opens the window with the result.
    void start();

private:
    void lookForProgram();
    void askForWindow();
    void takeAnswer();
    void tell(const QString& headline, const QString& rest);
    void tellAlreadyRuns();
    void tellNotRunning();
    void tellNoAnswer();

    Path appFolder_;
    QLabel* lblHeadline_;
    QLabel* lblText_;
    QPushButton* cmdShow_;
    QPushButton* cmdClose_;
    std::unique_ptr<ShowRequest> request_;
    QTimer timLook_;
    QTimer timAnswer_;
    int triesLeft_ = 0;
};

}  // namespace vantrell
