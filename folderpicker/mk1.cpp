// SPDX-License-Identifier: MIT
#include "folderpicker/mk1.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <utility>

#include "folderpicker/folder_choice.h"
#include "platform/qt/qt_text.h"

namespace vantrell {

namespace {

// 315 by 285 twips, at 15 twips a pixel.
constexpr QSize kOwnSize{21, 19};

}  // namespace

MK1::MK1(FileToolbox& toolbox, QWidget* parent) : QWidget(parent), toolbox_(toolbox) {
    setObjectName(QStringLiteral("MK11"));
    setFixedSize(kOwnSize);
    hide();
    // Qt's dialog reads its settings when it opens and saves them when it closes: which folders were visited, among
    // others. In a place where no file can be, it finds none and leaves none.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

MK1::~MK1() { withdraw(); }

bool MK1::browse(bool showsCreate, bool showsRecurse, Outcome outcome) {
    if (dialog_) {
        dialog_->raise();
        dialog_->activateWindow();
        return false;
    }
    const Path home = QFile::encodeName(QDir::homePath()).toStdString();
    const QString title = shownText(Title_.empty() ? kDefaultPickTitle : Title_);
    dialog_ =
        new frmButton({shownText(Caption_), title, startFolder(InitDir_, home, toolbox_), showsCreate, showsRecurse},
                      toolbox_, ParentForm_);
    connect(dialog_, &frmButton::createAsked, this, &MK1::rememberPlace);
    connect(dialog_, &QDialog::finished, this, [this, outcome = std::move(outcome)](int result) {
        frmButton* dialog = std::exchange(dialog_, nullptr);
        RecurseChosen_ = dialog->isRecurseTicked();
        lastSize_ = dialog->size();
        outcome(result == QDialog::Accepted ? dialog->selection() : Path());
    });
    if (lastSize_.isValid()) dialog_->resize(lastSize_);
    if (KeepDlgRect_) dialog_->setGeometry(DlgRect_);
    dialog_->open();
    return true;
}

// Once a folder has been created, every chooser opens at the place and with the size that the chooser had at the last
// creation.
void MK1::rememberPlace(const QRect& place) {
    DlgRect_ = place;
    KeepDlgRect_ = true;
}

void MK1::withdraw() {
    if (frmButton* dialog = std::exchange(dialog_, nullptr)) delete dialog;
}

}  // namespace vantrell
