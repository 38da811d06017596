// SPDX-License-Identifier: MIT
#include "folderpicker/frmButton.h"

#include <QAbstractItemView>
#include <QAbstractProxyModel>
#include <QCompleter>
#include <QDir>
#include <QFile>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QScreen>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>
#include <initializer_list>
#include <vector>

#include "folderpicker/folder_choice.h"
#include "folderpicker/frmPlaces.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/text_box.h"

namespace vantrell {

namespace {

/// Makes room for whole rows above what the layout holds.
void moveDown(QGridLayout& grid, int rows) {
    struct Place {
        QLayoutItem* item;
        int row, column, rowSpan, columnSpan;
    };
    std::vector<Place> places;
    while (grid.count() > 0) {
        Place place{};
        grid.getItemPosition(0, &place.row, &place.column, &place.rowSpan, &place.columnSpan);
        place.item = grid.takeAt(0);
        places.push_back(place);
    }
    for (const Place& place : places)
        grid.addItem(place.item, place.row + rows, place.column, place.rowSpan, place.columnSpan);
}

/// The folder, or the nearest above it that Qt's dialog can name: it cannot name one whose bytes are not UTF-8.
Path namedFolder(Path folder) {
    for (; folder.find(kPathSeparator) != Path::npos && folder.size() > 1; folder = folderOf(folder)) {
        const QByteArray bytes = QByteArray::fromStdString(folder);
        if (QFile::encodeName(QFile::decodeName(bytes)) == bytes) return folder;
    }
    return Path(1, kPathSeparator);
}

}  // namespace

frmButton::frmButton(const Order& order, FileToolbox& toolbox, QWidget* parent)
    : QFileDialog(parent), toolbox_(toolbox) {
    setObjectName(QStringLiteral("frmButton"));
    setWindowTitle(order.caption.isEmpty() ? order.title : order.caption);
    setAttribute(Qt::WA_DeleteOnClose);
    // Read-only: Qt's own ways to create, rename and delete ask in boxes that hold up the event loop.
    setOptions(DontUseNativeDialog | ShowDirsOnly | ReadOnly);
    setFileMode(Directory);
    setLabelText(Accept, tr("OK"));
    setLabelText(Reject, tr("Cancel"));  // desktops give it a key, which may be that of Create
    setLabelText(FileName, tr("&Folder:"));
    field_ = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    makeExtras(order);
    makePrompt();
    arrange(order);
    sizeToFont();
    makeSuggestions();
    setSidebarUrls(sidebarPlaces(toolbox));
    connectControls();
    openOn(order.folder);
}

void frmButton::openOn(const Path& folder) {
    const Path named = namedFolder(folder);
    // Otherwise the folder that was typed or clicked before would stay selected.
    if (auto* details = findChild<QTreeView*>(QStringLiteral("treeView"))) details->selectionModel()->clear();
    setDirectory(QFile::decodeName(QByteArray::fromStdString(named)));
    {
        const QSignalBlocker quiet(field_);  // Qt's dialog would put the name of the opened folder into an empty field
        field_->clear();
    }
    unnamed_ = named == folder ? Path() : folder;
    openedOn_ = namedSelection();
    selectionChanged();
}

void frmButton::makeExtras(const Order& order) {
    lblStatus_ = new ElidedLabel(Qt::ElideMiddle, this);
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    lblStatus_->setAccessibleDescription(tr("Selected folder"));
    extras_ = new QWidget(this);
    Command1_ = new QPushButton(tr("&Create"), extras_);
    Command1_->setObjectName(QStringLiteral("Command1"));
    Command1_->setVisible(order.showsCreate);
    Check1_ = new QCheckBox(QStringLiteral("    INCLUDE SUBFOLDERS"), extras_);
    Check1_->setObjectName(QStringLiteral("Check1"));
    Check1_->setAccessibleName(tr("Include subfolders"));
    QFont small = Check1_->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    Check1_->setFont(small);
    Check1_->setVisible(order.showsRecurse);
    auto* row = new QHBoxLayout(extras_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(Command1_);
    row->addWidget(Check1_);
    row->addStretch(1);
}

void frmButton::makePrompt() {
    prompt_ = new QGroupBox(tr("Create Folder"), this);
    prompt_->setObjectName(QStringLiteral("prompt"));
    txtName_ = new QLineEdit(prompt_);
    txtName_->setObjectName(QStringLiteral("txtName"));
    cmdNameOk_ = new QPushButton(tr("OK"), prompt_);
    cmdNameOk_->setObjectName(QStringLiteral("cmdNameOk"));
    cmdNameOk_->setAccessibleName(tr("Create this folder"));
    cmdNameCancel_ = new QPushButton(tr("Cancel"), prompt_);
    cmdNameCancel_->setObjectName(QStringLiteral("cmdNameCancel"));
    cmdNameCancel_->setAccessibleName(tr("Create no folder"));
    auto* words = new QLabel(tr("Enter a name for your new folder"), prompt_);
    words->setBuddy(txtName_);
    txtName_->setAccessibleName(words->text());
    auto* column = new QVBoxLayout(prompt_);
    column->addWidget(words);
    auto* row = new QHBoxLayout;
    column->addLayout(row);
    row->addWidget(txtName_, 1);
    row->addWidget(cmdNameOk_);
    row->addWidget(cmdNameCancel_);
    prompt_->hide();
}

void frmButton::arrange(const Order& order) {
    auto* grid = qobject_cast<QGridLayout*>(layout());
    buttons_ = findChild<QDialogButtonBox*>();
    for (const char* name : {"newFolderButton", "fileTypeLabel", "fileTypeCombo"})
        if (auto* unused = findChild<QWidget*>(QString::fromLatin1(name))) unused->hide();
    if (grid == nullptr || buttons_ == nullptr) return;
    moveDown(*grid, 2);
    const int columns = grid->columnCount();
    auto* title = new QLabel(order.title, this);
    title->setObjectName(QStringLiteral("lblTitle"));
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true);
    grid->addWidget(title, 0, 0, 1, columns);
    grid->addWidget(lblStatus_, 1, 0, 1, columns);
    grid->addWidget(extras_, grid->rowCount() - 1, 0, 1, columns - 1);  // level with the lower of OK and Cancel
    grid->addWidget(prompt_, grid->rowCount(), 0, 1, columns);
    QWidget* before = field_;
    for (QWidget* next : std::initializer_list<QWidget*>{Command1_, Check1_, txtName_, cmdNameOk_, cmdNameCancel_}) {
        setTabOrder(before, next);
        before = next;
    }
}

// Qt's first sizes are in pixels; of the columns only two say something about a folder.
void frmButton::sizeToFont() {
    if (auto* split = findChild<QSplitter*>(QStringLiteral("splitter"))) {
        const int places = fontMetrics().averageCharWidth() * 20;
        split->widget(0)->setMinimumWidth(places);
        split->setSizes({places, places * 4});
        split->setStretchFactor(1, 1);
        split->setMinimumHeight(fontMetrics().height() * 6);
    }
    if (auto* details = findChild<QTreeView*>(QStringLiteral("treeView"))) {
        QHeaderView* columns = details->header();
        for (int column = 1; column + 1 < columns->count(); ++column) columns->hideSection(column);
        columns->setSectionResizeMode(0, QHeaderView::Stretch);
        columns->setSectionResizeMode(columns->count() - 1, QHeaderView::ResizeToContents);
    }
    const int line = fontMetrics().height();
    resize(QSize(line * 40, line * 28).expandedTo(size()).boundedTo(screen()->availableSize() * 0.9));
}

// A list of suggestions that opens by itself covers Create, and the first click beside it only closes it. So it opens
// when it is asked for.
void frmButton::makeSuggestions() {
    suggestions_ = field_->completer();
    suggestions_->setParent(this);
    field_->setCompleter(nullptr);
    suggestions_->setWidget(field_);
    field_->setToolTip(tr("The Down key shows the folders whose names begin so"));
    field_->installEventFilter(this);
    suggestions_->popup()->installEventFilter(this);
    connect(suggestions_, qOverload<const QString&>(&QCompleter::activated), field_, &QLineEdit::setText);
}

void frmButton::suggest() {
    suggestions_->setCompletionPrefix(field_->text());
    suggestions_->complete();
}

// The Enter key is for the list alone; it would also take what is typed for the choice.
bool frmButton::takeSuggestion() {
    const QModelIndex chosen = suggestions_->popup()->currentIndex();
    const auto* shown = qobject_cast<const QAbstractProxyModel*>(suggestions_->completionModel());
    if (!chosen.isValid() || shown == nullptr) return false;
    const QString path = suggestions_->pathFromIndex(shown->mapToSource(chosen));
    suggestions_->popup()->hide();
    field_->setText(path);
    return true;
}

void frmButton::connectControls() {
    connect(field_, &QLineEdit::textChanged, this, &frmButton::selectionChanged);
    connect(this, &QFileDialog::directoryEntered, this, &frmButton::selectionChanged);
    connect(this, &QFileDialog::currentChanged, this, &frmButton::selectionChanged);
    if (const auto* model = findChild<QFileSystemModel*>())
        connect(model, &QAbstractItemModel::rowsRemoved, this, &frmButton::reopenWhenDropped, Qt::QueuedConnection);
    connect(Command1_, &QPushButton::clicked, this, [this] { openPrompt(true); });
    connect(cmdNameOk_, &QPushButton::clicked, this, &frmButton::createFolderAsTyped);
    txtName_->installEventFilter(this);
    connect(cmdNameCancel_, &QPushButton::clicked, this, [this] { openPrompt(false); });
}

Path frmButton::selection() const { return unnamed_.empty() ? namedSelection() : unnamed_; }

Path frmButton::namedSelection() const {
    QString selected = selectedFiles().value(0);
    // The entry for the whole computer has no path. Qt would use the working directory instead.
    if (const QDir open = directory(); selected.isEmpty())
        selected = open.isRelative() ? QDir::rootPath() : open.absolutePath();
    return QFile::encodeName(QDir::cleanPath(selected)).toStdString();
}

// A listing that began before a folder was created does not contain that folder. When it ends, Qt removes the new
// folder from the view again.
void frmButton::reopenWhenDropped() {
    const auto* list = findChild<QListView*>(QStringLiteral("listView"));
    const QString open = directory().absolutePath();
    if (list == nullptr || list->rootIndex().isValid() || open == QDir::rootPath()) return;
    if (!toolbox_.isFolder(QFile::encodeName(open).toStdString())) return;
    setDirectory(QDir::rootPath());  // it would not go to where it believes it is
    setDirectory(open);
    selectionChanged();
}

void frmButton::selectionChanged() {
    if (namedSelection() != openedOn_ || !field_->text().isEmpty()) unnamed_.clear();
    const Path selected = selection();
    lblStatus_->showBytes(selected);
    const bool isFolder = toolbox_.isFolder(selected);
    Command1_->setEnabled(prompt_->isHidden() && isFolder);
    buttons_->button(QDialogButtonBox::Open)->setEnabled(isFolder);
}

void frmButton::openPrompt(bool open) {
    suggestions_->popup()->hide();
    if (open) {
        sizeBefore_ = size();
        prompt_->show();
        layout()->activate();
        sizeWithPrompt_ = size();
    } else {
        const QRect kept = placeWithoutPrompt();
        prompt_->hide();
        layout()->activate();
        resize(kept.size());
    }
    buttons_->setEnabled(!open);  // the prompt has an OK and a Cancel of its own
    txtName_->clear();
    selectionChanged();
    open ? txtName_->setFocus() : Command1_->setFocus();
}

// The prompt may need more room than there is; what the operator has resized meanwhile stays as it is.
QRect frmButton::placeWithoutPrompt() const {
    const bool isAsItGrew = prompt_->isVisible() && size() == sizeWithPrompt_;
    return {geometry().topLeft(), isAsItGrew ? sizeBefore_ : size()};
}

void frmButton::createFolderAsTyped() {
    const std::string name = QFile::encodeName(txtName_->text()).toStdString();
    if (name.empty()) return openPrompt(false);
    createAsked(placeWithoutPrompt());
    const NewFolder made = createFolder(selection(), name, toolbox_);
    if (made.path.empty()) return refuse(made.refusal);
    openPrompt(false);
    openOn(made.path);
    buttons_->button(QDialogButtonBox::Open)->setFocus();
}

void frmButton::refuse(const std::string& words) {
    const QString text = QString::fromStdString(words).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    auto* box = new TextBox(QString::fromLatin1(kPickerTitle), text, this);
    box->setIcon(QMessageBox::Warning);
    box->addButton(QMessageBox::Ok);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QDialog::finished, txtName_, [this] {
        if (!txtName_->isVisible()) return;
        txtName_->setFocus();
        txtName_->selectAll();
    });
    box->open();
}

// When the typed folder does not exist, Qt itself would show a box that stops the event loop.
void frmButton::accept() {
    if (prompt_->isVisible() && !txtName_->text().isEmpty()) return createFolderAsTyped();
    if (!toolbox_.isFolder(selection())) return refuse("There is no folder\r\n" + shownText(selection()).toStdString());
    done(QDialog::Accepted);
}

// The fields keep these keys to themselves, that for the name on some desktops.
bool frmButton::eventFilter(QObject* watched, QEvent* event) {
    const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isEnter && watched == suggestions_->popup() && takeSuggestion()) return true;
    if (isEnter && watched == txtName_) {
        createFolderAsTyped();
    } else if (key == Qt::Key_Down && watched == field_) {
        suggest();
    } else {
        return QFileDialog::eventFilter(watched, event);
    }
    return true;
}

void frmButton::keyPressEvent(QKeyEvent* event) {
    const bool isInPrompt = prompt_->isVisible() && prompt_->isAncestorOf(focusWidget());
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isInPrompt && isEnter) return createFolderAsTyped();
    if (isInPrompt && event->key() == Qt::Key_Escape) return openPrompt(false);
    QFileDialog::keyPressEvent(event);
}

}  // namespace vantrell
