// SPDX-License-Identifier: MIT
#include "activitylog/frmHistoryInfo.h"

#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QShortcut>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"

namespace vantrell {

namespace {

constexpr int kFirstWidth = 777;
constexpr int kFirstHeight = 560;

QString number(std::size_t count) { return QLocale().toString(static_cast<qulonglong>(count)); }

QString linesText(std::size_t count) {
    return count == 1 ? QObject::tr("1 line") : QObject::tr("%1 lines").arg(number(count));
}

}  // namespace

frmHistoryInfo::frmHistoryInfo(Path logFolder, const FileReading& files, EventLoop& loop, QWidget& mainWindow)
    : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint),
      mainWindow_(mainWindow),
      reader_(std::move(logFolder), files, loop, *this),
      find_(loop, reader_.lines(), *this),
      showFound_([this] { showFound(); }) {
    setObjectName(QStringLiteral("frmHistoryInfo"));
    setWindowTitle(tr("History Log"));
    makeControls();
    makeFindControls();
    arrange();
    connectControls();
    resize(QSize(kFirstWidth, kFirstHeight).expandedTo(sizeHint()));
}

frmHistoryInfo::~frmHistoryInfo() { delete txtScrollingHistory_; }  // it shows lines that go before it would

// In the order of the Tab key.
void frmHistoryInfo::makeControls() {
    txtScrollingHistory_ = new LineView(reader_.lines(), this);
    txtScrollingHistory_->setObjectName(QStringLiteral("txtScrollingHistory"));
    txtScrollingHistory_->setAccessibleName(tr("Log"));
    lblRead_ = new ElidedLabel(Qt::ElideRight, this);
    lblRead_->setObjectName(QStringLiteral("lblRead"));
}

void frmHistoryInfo::makeFindControls() {
    txtFind_ = new QLineEdit(this);
    txtFind_->setObjectName(QStringLiteral("txtFind"));
    txtFind_->setAccessibleName(tr("Find"));
    txtFind_->setPlaceholderText(tr("Find (Ctrl+F)"));
    txtFind_->setClearButtonEnabled(true);
    txtFind_->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
    cmdPrevious_ = new QPushButton(tr("&Previous"), this);
    cmdPrevious_->setObjectName(QStringLiteral("cmdPrevious"));
    cmdNext_ = new QPushButton(tr("&Next"), this);
    cmdNext_->setObjectName(QStringLiteral("cmdNext"));
    lblFound_ = new QLabel(this);
    lblFound_->setObjectName(QStringLiteral("lblFound"));
    lblFound_->setMinimumWidth(
        fontMetrics().horizontalAdvance(tr("%1 of %2 lines").arg(number(999'999), number(999'999))));
    cmdExit_ = new QPushButton(tr("E&xit"), this);
    cmdExit_->setAccessibleDescription(tr("Closes this window"));
    cmdExit_->setObjectName(QStringLiteral("cmdExit"));
    for (QPushButton* button : {cmdPrevious_, cmdNext_, cmdExit_}) button->setAutoDefault(true);
    showFound();
}

void frmHistoryInfo::arrange() {
    auto* row = new QHBoxLayout;
    row->addWidget(txtFind_, 3);
    row->addWidget(cmdPrevious_);
    row->addWidget(cmdNext_);
    row->addWidget(lblFound_);
    row->addStretch(1);
    row->addWidget(cmdExit_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(txtScrollingHistory_, 1);
    column->addWidget(lblRead_);
    column->addLayout(row);
}

void frmHistoryInfo::connectControls() {
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(Qt::CTRL | Qt::Key_W, this), &QShortcut::activated, this, &QWidget::close);
    connect(txtFind_, &QLineEdit::textChanged, this,
            [this](const QString& text) { find_.find(text.toStdString(), txtScrollingHistory_->lineInHand()); });
    connect(cmdNext_, &QPushButton::clicked, this, [this] { find_.findNext(); });
    connect(cmdPrevious_, &QPushButton::clicked, this, [this] { find_.findPrevious(); });
    connect(txtScrollingHistory_, &LineView::copyAsked, this,
            [this] { reader_.copy(txtScrollingHistory_->selectedLines()); });
    connect(txtScrollingHistory_, &LineView::linesTaken, this, &frmHistoryInfo::showLines);

    auto* find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, this, &frmHistoryInfo::startFinding);
    addAction(find);
    addKey(Qt::Key_F3, &HistoryFind::findNext);
    addKey(Qt::SHIFT | Qt::Key_F3, &HistoryFind::findPrevious);
}

void frmHistoryInfo::addKey(const QKeySequence& key, void (HistoryFind::*step)()) {
    auto* action = new QAction(this);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, [this, step] { (find_.*step)(); });
    addAction(action);
}

void frmHistoryInfo::openHistory(const Path& fileName) {
    if (!isVisible()) {
        setWindowState(Qt::WindowNoState);
        move(mainWindow_.frameGeometry().topLeft());
        show();
        txtScrollingHistory_->setFocus();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    readtheHistoryfile(fileName);
    showReading();
}

void frmHistoryInfo::readingWentOn() { txtScrollingHistory_->linesJoined(); }

void frmHistoryInfo::showLines() {
    showReading();
    find_.linesJoined();
}

void frmHistoryInfo::showReading() {
    const HistoryReading& reading = reader_.reading();
    QString text = shownText(reading.files) + QStringLiteral(": ") + linesText(reading.lines);
    if (reading.isUnderWay) text += tr(" so far");
    if (reading.isIncomplete) text += tr(", not all of it could be read");
    lblRead_->showBytes(text.toStdString());
}

void frmHistoryInfo::takeCopy(std::string text) { QGuiApplication::clipboard()->setText(QString::fromStdString(text)); }

void frmHistoryInfo::refuseCopy() { lblRead_->showBytes(tr("So much text cannot be copied at once.").toStdString()); }

void frmHistoryInfo::showMatch(std::size_t line) {
    txtScrollingHistory_->takeNew();
    txtScrollingHistory_->showLine(line);
}

void frmHistoryInfo::showFindState(const FindState& state) {
    findState_ = state;
    showFound_.request();
}

void frmHistoryInfo::showFound() {
    const bool hasMatches = findState_.matches > 0;
    cmdPrevious_->setEnabled(hasMatches);
    cmdNext_->setEnabled(hasMatches);
    QString text;
    if (findState_.isSearching) {
        text = hasMatches              ? tr("%1 of %2").arg(number(findState_.position), linesText(findState_.matches))
               : findState_.isUnderWay ? QString()
                                       : tr("Not found");
        if (findState_.isUnderWay) text += QStringLiteral(" …");
    }
    lblFound_->setText(text);
}

void frmHistoryInfo::startFinding() {
    txtFind_->setFocus();
    txtFind_->selectAll();
}

void frmHistoryInfo::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (txtFind_->hasFocus() && isEnter) {
        event->modifiers() & Qt::ShiftModifier ? find_.findPrevious() : find_.findNext();
    } else if (txtFind_->hasFocus() && event->key() == Qt::Key_Escape) {
        txtScrollingHistory_->setFocus();
    } else if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void frmHistoryInfo::closeEvent(QCloseEvent* event) {
    txtFind_->clear();
    find_.clear();
    reader_.clear();
    txtScrollingHistory_->startOver();
    QWidget::closeEvent(event);
}

}  // namespace vantrell
