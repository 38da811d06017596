// SPDX-License-Identifier: MIT
#include "helpers/OpenedMsg/opened_msg_window.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "platform/linux/unix_show_request.h"
#include "widgets/wide_button.h"

namespace vantrell {

namespace {

// Finding the program and asking it are both tried this often. The program may have locked its folder and not listen
// yet, and it may be busy for a moment.
constexpr int kTryEveryMs = 50;
constexpr int kLookTries = 40;
constexpr int kAnswerTries = 100;
constexpr int kTextWidthInLetters = 46;

QLabel* addLabel(QDialog* window, const char* name) {
    auto* label = new QLabel(window);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kTextWidthInLetters);
    return label;
}

}  // namespace

OpenedMsgWindow::OpenedMsgWindow(Path appFolder)
    : appFolder_(std::move(appFolder)),
      lblHeadline_(addLabel(this, "lblHeadline")),
      lblText_(addLabel(this, "lblText")) {
    setObjectName(QStringLiteral("OpenedMsg"));
    setWindowTitle(tr("Vantrell"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("vantrell-zep")));
    QFont bold = lblHeadline_->font();
    bold.setBold(true);
    lblHeadline_->setFont(bold);
    auto* buttons = new QDialogButtonBox(this);
    cmdShow_ = new WideButton(tr("&Show its window"), this);
    buttons->addButton(cmdShow_, QDialogButtonBox::AcceptRole);
    cmdShow_->setObjectName(QStringLiteral("cmdShow"));
    cmdShow_->setDefault(true);
    cmdClose_ = buttons->addButton(tr("&Close"), QDialogButtonBox::RejectRole);
    cmdClose_->setObjectName(QStringLiteral("cmdClose"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblHeadline_);
    layout->addWidget(lblText_);
    layout->addStretch();
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    connect(cmdShow_, &QPushButton::clicked, this, &OpenedMsgWindow::askForWindow);
    connect(cmdClose_, &QPushButton::clicked, this, &OpenedMsgWindow::reject);
    connect(&timLook_, &QTimer::timeout, this, &OpenedMsgWindow::lookForProgram);
    connect(&timAnswer_, &QTimer::timeout, this, &OpenedMsgWindow::takeAnswer);
}

OpenedMsgWindow::~OpenedMsgWindow() = default;

void OpenedMsgWindow::start() {
    triesLeft_ = kLookTries;
    timLook_.start(kTryEveryMs);
    lookForProgram();
}

void OpenedMsgWindow::lookForProgram() {
    const bool found = someoneListensIn(appFolder_);
    if (!found && --triesLeft_ > 0) return;
    timLook_.stop();
    if (found)
        tellAlreadyRuns();
    else
        tellNotRunning();
    show();
    raise();
    activateWindow();
}

void OpenedMsgWindow::askForWindow() {
    cmdShow_->setEnabled(false);
    request_ = std::make_unique<UnixShowRequest>(appFolder_);
    triesLeft_ = kAnswerTries;
    timAnswer_.start(kTryEveryMs);
    takeAnswer();
}

void OpenedMsgWindow::takeAnswer() {
    const ShowRequest::Answer answer = request_->answer();
    if (answer == ShowRequest::Answer::pending && --triesLeft_ > 0) return;
    timAnswer_.stop();
    request_.reset();
    switch (answer) {
        case ShowRequest::Answer::shown:
            return accept();
        case ShowRequest::Answer::notRunning:
            return tellNotRunning();
        case ShowRequest::Answer::refused:
        case ShowRequest::Answer::pending:
            return tellNoAnswer();
    }
}

void OpenedMsgWindow::tell(const QString& headline, const QString& rest) {
    lblHeadline_->setText(headline);
    lblText_->setText(rest);
    adjustSize();
}

void OpenedMsgWindow::tellAlreadyRuns() {
    tell(tr("Vantrell is already running."),
         tr("It was not started a second time. Look for its icon in the notification area or for its window in the "
            "task bar, or have its window shown now."));
}

void OpenedMsgWindow::tellNotRunning() {
    cmdShow_->hide();
    cmdClose_->setDefault(true);
    cmdClose_->setFocus();
    tell(tr("No running Vantrell can be found."),
         tr("It has probably ended in the meantime. Start it again to see its window."));
}

void OpenedMsgWindow::tellNoAnswer() {
    cmdShow_->setEnabled(true);
    cmdShow_->setFocus();
    tell(tr("Vantrell is running, but it did not answer."),
         tr("Its window could not be brought to the front from here. Try again, or look for its icon in the "
            "notification area or for its window in the task bar."));
}

}  // namespace vantrell
