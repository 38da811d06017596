// SPDX-License-Identifier: MIT
#include "mainwindow/frmAbout.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "widgets/elided_label.h"
#include "widgets/wide_button.h"

namespace vantrell {

namespace {

/// How much of the data folder is seen at least.
constexpr int kFolderCharacters = 52;

QPushButton* makeButton(const QString& name, const QString& caption, const QString& description, QWidget* parent) {
    auto* button = new WideButton(caption, parent);
    button->setObjectName(name);
    button->setAccessibleDescription(description);
    return button;
}

}  // namespace

QString toolkitText() {
    return QStringLiteral("Qt %1 (%2)").arg(QString::fromLatin1(qVersion()), QGuiApplication::platformName());
}

frmAbout::frmAbout(const AboutFacts& facts, QWidget* parent) : QDialog(parent), dataFolder_(facts.dataFolder) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(tr("About %1").arg(shownText(facts.title)));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    auto* column = new QVBoxLayout(this);
    column->addLayout(makeHead(facts));
    column->addSpacing(column->spacing());
    column->addLayout(makeFacts(facts));
    column->addStretch(1);
    lblCopied_ = makeText({}, tr("What was done"));
    lblCopied_->setObjectName(QStringLiteral("lblCopied"));
    column->addWidget(lblCopied_);
    column->addLayout(makeButtons());
}

QLayout* frmAbout::makeHead(const AboutFacts& facts) {
    auto* lines = new QVBoxLayout;
    QLabel* title = makeText(shownText(facts.title), tr("Program"));
    QFont large = title->font();
    large.setBold(true);
    large.setPointSizeF(1.5 * large.pointSizeF());
    title->setFont(large);
    QLabel* version = makeText(tr("Version %1").arg(shownText(facts.version)), tr("Version"));
    version->setObjectName(QStringLiteral("lblVersion"));
    lines->addWidget(title);
    lines->addWidget(version);
    lines->addWidget(makeText(tr("Encrypts every file that is dropped into a folder."), tr("What it is for")));
    return lines;
}

QFormLayout* frmAbout::makeFacts(const AboutFacts& facts) {
    auto* form = new QFormLayout;
    form->setHorizontalSpacing(2 * style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    const auto add = [&](const QString& title, const QString& text) { form->addRow(title, makeText(text, title)); };
    add(tr("Licence"), tr("MIT, without any warranty"));
    add(tr("Copyright"), tr("2026 Quillon, Inc"));
    add(tr("Qt"), QString::fromLatin1(qVersion()));
    for (const LibraryVersion& library : facts.libraries) add(shownText(library.name), shownText(library.version));
    form->addRow(tr("Data folder"), makeDataFolderRow(facts.dataFolder));
    return form;
}

QLayout* frmAbout::makeDataFolderRow(const Path& folder) {
    auto* label = new ElidedLabel(Qt::ElideMiddle, this);
    label->setObjectName(QStringLiteral("lblDataFolder"));
    label->setAccessibleDescription(tr("Data folder"));
    label->setMinimumWidth(kFolderCharacters * fontMetrics().averageCharWidth());
    label->showBytes(folder);
    QPushButton* open = makeButton(QStringLiteral("cmdOpenDataFolder"), tr("&Open Folder"),
                                   tr("Shows the data folder in the file manager"), this);
    connect(open, &QPushButton::clicked, this, &frmAbout::openDataFolder);
    auto* row = new QHBoxLayout;
    row->addWidget(label, 1);
    row->addSpacing(fontMetrics().averageCharWidth());
    row->addWidget(open);
    return row;
}

QLayout* frmAbout::makeButtons() {
    QPushButton* system = makeButton(QStringLiteral("cmdSysInfo"), tr("&System Info..."),
                                     tr("Starts the desktop's own program that shows what this machine is"), this);
    connect(system, &QPushButton::clicked, this, &frmAbout::systemInfoPressed);
    QPushButton* copy =
        makeButton(QStringLiteral("cmdCopyDiagnostics"), tr("&Copy Diagnostics"),
                   tr("Copies versions, settings and the last events, without any name of a file or folder"), this);
    copy->setToolTip(copy->accessibleDescription());
    connect(copy, &QPushButton::clicked, this, &frmAbout::copyDiagnosticsPressed);
    QPushButton* close = makeButton(QStringLiteral("cmdOK"), tr("OK"), tr("Closes this window"), this);
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* row = new QHBoxLayout;
    row->addWidget(system);
    row->addWidget(copy);
    row->addStretch(1);
    row->addWidget(close);
    close->setFocus();
    return row;
}

QLabel* frmAbout::makeText(const QString& text, const QString& description) {
    auto* label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAccessibleDescription(description);
    return label;
}

void frmAbout::openDataFolder() {
    const QUrl url = QUrl::fromLocalFile(QFile::decodeName(QByteArray::fromStdString(dataFolder_)));
    const bool isShown = QDesktopServices::openUrl(url);
    lblCopied_->setText(isShown ? QString() : tr("There is no file manager that could show the folder."));
}

void frmAbout::copyDiagnostics(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    lblCopied_->setText(tr("Copied: no name of a file or folder is in it."));
}

}  // namespace vantrell
