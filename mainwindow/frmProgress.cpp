// SPDX-License-Identifier: MIT
#include "mainwindow/frmProgress.h"

#include <QGridLayout>
#include <QLocale>
#include <cmath>
#include <limits>

#include "widgets/steady_label.h"

namespace vantrell {

namespace {

constexpr int kBarSteps = 1000;

int barValue(std::uint64_t done, std::uint64_t total) {
    if (done >= total) return kBarSteps;
    return static_cast<int>(static_cast<double>(done) / static_cast<double>(total) * kBarSteps);
}

QString bytesText(std::uint64_t done, std::uint64_t total) {
    const auto sizeText = [](std::uint64_t bytes) {
        return QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeIecFormat);
    };
    return QObject::tr("%1 of %2").arg(sizeText(done), sizeText(total));
}

/// Reserves room for the longest text that usually comes.
class Bar final : public QProgressBar {
public:
    using QProgressBar::QProgressBar;

    [[nodiscard]] QSize minimumSizeHint() const override {
        const int text = fontMetrics().horizontalAdvance(QStringLiteral("  100 %, 10 h 10 min left  "));
        return {text, QProgressBar::minimumSizeHint().height()};
    }
};

// Pale while nothing is in progress.
void showNothingOn(QProgressBar& bar) {
    bar.setEnabled(false);
    bar.setValue(0);
    bar.setFormat({});
}

QProgressBar* makeBar(const QString& name, const QString& accessibleName, QWidget* parent) {
    auto* bar = new Bar(parent);
    bar->setObjectName(name);
    bar->setAccessibleName(accessibleName);
    bar->setRange(0, kBarSteps);
    showNothingOn(*bar);
    bar->setAlignment(Qt::AlignCenter);
    return bar;
}

void showOnBar(QProgressBar& bar, int value, const QString& text) {
    bar.setEnabled(true);
    bar.setValue(value);
    if (bar.format() != text) bar.setFormat(text);
}

QLabel* makeNumber(const QString& name, const QString& description, QWidget* parent) {
    auto* label = new SteadyLabel(parent);
    label->reserve({QString::number(std::numeric_limits<std::int32_t>::max())});
    label->setText(QStringLiteral("0"));
    label->setObjectName(name);
    label->setAccessibleDescription(description);
    return label;
}

void showNumber(QLabel& label, const QString& number) {
    if (label.text() != number) label.setText(number);
}

}  // namespace

QString timeLeftText(std::uint64_t done, std::uint64_t total, std::int64_t elapsedMilliseconds) {
    if (done == 0 || done >= total || elapsedMilliseconds < 1000) return {};
    const double share = static_cast<double>(total - done) / static_cast<double>(done);
    const double seconds = std::ceil(static_cast<double>(elapsedMilliseconds) / 1000 * share);
    if (seconds < 60) return QObject::tr("%1 s left").arg(static_cast<int>(seconds));
    const double minutes = std::ceil(seconds / 60);
    if (minutes < 60) return QObject::tr("%1 min left").arg(static_cast<int>(minutes));
    if (minutes >= 100 * 60) return QObject::tr("more than 100 h left");
    return QObject::tr("%1 h %2 min left").arg(static_cast<int>(minutes) / 60).arg(static_cast<int>(minutes) % 60);
}

frmProgress::frmProgress(QWidget* parent)
    : QWidget(parent),
      lblCurrentProcessingFile_(new ElidedLabel(Qt::ElideMiddle, this)),
      lblLastfileProcessed_(new ElidedLabel(Qt::ElideMiddle, this)),
      lblTotFileTobe_(makeNumber(QStringLiteral("lblTotFileTobe"), tr("Files found"), this)),
      lblCurNumFilesProcessed_(
          makeNumber(QStringLiteral("lblCurNumFilesProcessed"), tr("Files processed since the program started"), this)),
      lblStopping_(new QLabel(tr("Stopping after this file ..."), this)),
      fileBar_(makeBar(QStringLiteral("prgFile"), tr("Current file"), this)),
      passBar_(makeBar(QStringLiteral("prgPass"), tr("Files of this pass"), this)),
      show_([this] { showAll(); }) {
    lblCurrentProcessingFile_->setObjectName(QStringLiteral("lblCurrentProcessingFile"));
    lblCurrentProcessingFile_->setAccessibleDescription(tr("Current file"));
    lblLastfileProcessed_->setObjectName(QStringLiteral("lblLastfileProcessed"));
    lblLastfileProcessed_->setAccessibleDescription(tr("Last file"));
    setAccessibleName(tr("Progress"));
    fileBar_->setAccessibleDescription(tr("How much of the current file is done"));
    passBar_->setAccessibleDescription(tr("How many of the files that were found are done"));
    lblStopping_->setObjectName(QStringLiteral("lblStopping"));
    lblStopping_->setAlignment(Qt::AlignCenter);
    QSizePolicy keepsItsRoom = lblStopping_->sizePolicy();
    keepsItsRoom.setRetainSizeWhenHidden(true);
    lblStopping_->setSizePolicy(keepsItsRoom);
    lblStopping_->hide();
    arrange();
}

void frmProgress::arrange() {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(2 * grid->horizontalSpacing());
    grid->addWidget(new QLabel(tr("Current file"), this), 0, 0);
    grid->addWidget(lblCurrentProcessingFile_, 0, 1, 1, 3);
    grid->addWidget(fileBar_, 0, 4);
    grid->addWidget(new QLabel(tr("Last file"), this), 1, 0);
    grid->addWidget(lblLastfileProcessed_, 1, 1, 1, 3);
    grid->addWidget(lblStopping_, 1, 4);
    grid->addWidget(new QLabel(tr("Files found"), this), 2, 0);
    grid->addWidget(lblTotFileTobe_, 2, 1);
    grid->addWidget(new QLabel(tr("Processed since start"), this), 2, 2);
    grid->addWidget(lblCurNumFilesProcessed_, 2, 3);
    grid->addWidget(passBar_, 2, 4);
    // Screen readers read the controls out from the lowest to the topmost one. Raising each in turn gives the order of
    // the grid.
    for (int i = 0; i < grid->count(); ++i) grid->itemAt(i)->widget()->raise();
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    grid->setColumnStretch(4, 2);
}

void frmProgress::setCurrentFile(const std::string& name) {
    lblCurrentProcessingFile_->showBytes(name);
    file_ = {};
    sinceFileBegan_.start();
    show_.request();
}

void frmProgress::setTotalFiles(std::uint64_t count) {
    totalFiles_ = count;
    show_.request();
}

void frmProgress::setProcessedCount(std::int32_t count) {
    processed_ = count;
    show_.request();
}

void frmProgress::setPassProgress(std::uint64_t done, std::uint64_t total) {
    if (!pass_.known || done < pass_.done) sincePassBegan_.start();
    pass_ = {true, done, total};
    show_.request();
}

void frmProgress::setFileProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal) {
    if (!file_.known || bytesDone < file_.done) sinceFileBegan_.start();
    file_ = {true, bytesDone, bytesTotal};
    show_.request();
}

void frmProgress::setStopping(bool stopping) { lblStopping_->setVisible(stopping); }

void frmProgress::clear() {
    setStopping(false);
    lblCurrentProcessingFile_->showBytes({});
    file_ = {};
    pass_ = {};
    show_.request();
}

void frmProgress::showAll() {
    showNumber(*lblTotFileTobe_, QString::number(totalFiles_));
    showNumber(*lblCurNumFilesProcessed_, QString::number(processed_));
    showFile();
    showPass();
}

void frmProgress::showFile() {
    fileBar_->setToolTip(file_.known ? bytesText(file_.done, file_.total) : QString());
    if (!file_.known) return showNothingOn(*fileBar_);
    const int value = barValue(file_.done, file_.total);
    QString text = tr("%1 %").arg(value * 100 / kBarSteps);
    const QString left = timeLeftText(file_.done, file_.total, sinceFileBegan_.elapsed());
    if (!left.isEmpty()) text += QStringLiteral(", ") + left;
    showOnBar(*fileBar_, value, text);
}

void frmProgress::showPass() {
    if (!pass_.known) return showNothingOn(*passBar_);
    QString text = tr("%1 of %2 files").arg(pass_.done).arg(pass_.total);
    const QString left = timeLeftText(pass_.done, pass_.total, sincePassBegan_.elapsed());
    if (!left.isEmpty()) text += QStringLiteral(", ") + left;
    const QString shorter = tr("%1 of %2").arg(pass_.done).arg(pass_.total);
    const QFontMetrics metrics = passBar_->fontMetrics();
    const bool fits = metrics.horizontalAdvance(text) + metrics.height() <= passBar_->width();
    showOnBar(*passBar_, barValue(pass_.done, pass_.total), fits ? text : shorter);
}

}  // namespace vantrell
