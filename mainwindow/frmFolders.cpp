// SPDX-License-Identifier: MIT
#include "mainwindow/frmFolders.h"

#include <QLabel>

#include "widgets/wide_button.h"

namespace vantrell {

frmFolders::frmFolders(QWidget* parent) : QFrame(parent) {
    setFrameShape(StyledPanel);
    setAccessibleName(tr("Folders"));
    auto* grid = new QGridLayout(this);
    grid->setHorizontalSpacing(2 * grid->horizontalSpacing());
    grid->setColumnStretch(1, 1);
    addRow(*grid, FolderKind::source, tr("So&urce"), QStringLiteral("lblSourcePath"), tr("Source folder"));
    addCheckBox(*grid);
    addRow(*grid, FolderKind::destination, tr("&Destination"), QStringLiteral("lblDestinPath"),
           tr("Destination folder"));
    addRow(*grid, FolderKind::done, tr("Don&e"), QStringLiteral("lblMoveToPath"), tr("Done folder"));
    addRow(*grid, FolderKind::reject, tr("&Rejected"), QStringLiteral("lblMoveToRejectPath"), tr("Rejected folder"));
}

void frmFolders::addRow(QGridLayout& grid, FolderKind kind, const QString& caption, const QString& labelName,
                        const QString& spokenName) {
    Row& row = this->row(kind);
    auto* name = new QLabel(caption, this);  // first, since this is the order in which they are read out
    row.label = new ElidedLabel(Qt::ElideMiddle, this);
    row.label->setObjectName(labelName);
    row.label->setAccessibleDescription(spokenName);
    QLayout* offer = makeOffer(kind, spokenName);
    row.button = new WideButton(tr("Change Path"), this);
    row.button->setObjectName(QStringLiteral("cmdSelectSource%1").arg(static_cast<int>(kind)));
    row.button->setAccessibleName(tr("Change %1").arg(spokenName));
    row.button->setAccessibleDescription(tr("Stops processing and lets you choose another folder"));
    row.button->setAutoDefault(true);
    connect(row.button, &QPushButton::clicked, this, [this, kind] { Q_EMIT changePressed(kind); });

    name->setBuddy(row.button);
    const int line = grid.rowCount();
    grid.addWidget(name, line, 0);
    grid.addWidget(row.label, line, 1);
    grid.addLayout(offer, line, 1);
    grid.addWidget(row.button, line, 2);
}

QLayout* frmFolders::makeOffer(FolderKind kind, const QString& spokenName) {
    Row& row = this->row(kind);
    row.lostLabel = new ElidedLabel(Qt::ElideMiddle, this);
    row.lostLabel->setObjectName(QStringLiteral("lblLost%1").arg(static_cast<int>(kind)));
    row.lostLabel->setAccessibleDescription(tr("%1, which is not set").arg(spokenName));
    QFont slanted = row.lostLabel->font();
    slanted.setItalic(true);
    row.lostLabel->setFont(slanted);
    row.takeBack = new WideButton(tr("Take Back"), this);
    row.takeBack->setObjectName(QStringLiteral("cmdTakeBack%1").arg(static_cast<int>(kind)));
    row.takeBack->setAccessibleName(tr("Take back %1").arg(spokenName));
    row.takeBack->setAccessibleDescription(tr("Sets the folder again that stood here before"));
    row.takeBack->setAutoDefault(true);
    connect(row.takeBack, &QPushButton::clicked, this, [this, kind] {
        const Path lost = this->row(kind).lost;  // the row forgets it when it shows the folder
        Q_EMIT takeBackPressed(kind, lost);
    });
    auto* offer = new QHBoxLayout;
    offer->addWidget(row.lostLabel, 1);
    offer->addWidget(row.takeBack);
    showOffer(row);
    return offer;
}

void frmFolders::showOffer(Row& row) {
    const bool isOffered = row.folder.empty() && !row.lost.empty();
    row.lostLabel->showBytes("Before: " + row.lost);
    row.label->setVisible(!isOffered);
    row.lostLabel->setVisible(isOffered);
    row.takeBack->setVisible(isOffered);
}

void frmFolders::addCheckBox(QGridLayout& grid) {
    chkActivateSF_ = new QCheckBox(tr("&Include Sub Directories"), this);
    chkActivateSF_->setObjectName(QStringLiteral("chkActivateSF"));
    chkActivateSF_->setAccessibleDescription(tr("Whether files in folders below the Source folder are processed too"));
    // Assistive technology toggles without a click.
    connect(chkActivateSF_, &QCheckBox::toggled, this, &frmFolders::includeSubfoldersClicked);
    grid.addWidget(chkActivateSF_, grid.rowCount(), 1);
}

void frmFolders::setFolder(FolderKind kind, const Path& folder) {
    Row& row = this->row(kind);
    row.folder = folder;
    if (!folder.empty()) row.lost.clear();
    row.label->showBytes(folder);
    showOffer(row);
}

void frmFolders::offerFolder(FolderKind kind, const Path& lost) {
    row(kind).lost = lost;
    showOffer(row(kind));
}

}  // namespace vantrell
