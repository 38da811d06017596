// SPDX-License-Identifier: MIT
#include "passwords/frmEDPasswords.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/qt_text.h"
#include "widgets/wide_button.h"

namespace vantrell {

namespace {

// 7185 by 4635 twips, at 15 twips a pixel.
constexpr int kNormalWidth = 479;
constexpr int kNormalHeight = 309;
constexpr int kShownCharacters = 32;  // as long as a key is

template <class Widget>
Widget* named(Widget* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

/// A pasted text may hold line breaks and other control characters, which nobody would see in the field. They are left
/// out.
QString withoutControlCharacters(QString text) {
    text.removeIf([](QChar character) { return character.category() == QChar::Other_Control; });
    return text;
}

/// A hidden control keeps its place, so that the others do not move.
void keepPlace(QWidget& control) {
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
}

}  // namespace

frmEDPasswords::frmEDPasswords() : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint) {
    setObjectName(QStringLiteral("frmEDPasswords"));
    setWindowTitle(tr("Add/Edit Passwords"));
    makeControls();
    arrange();
    connectControls();
    frmEDPasswords::showControls({});
}

// In the order of the Tab key.
void frmEDPasswords::makeControls() {
    lblHeading_ = named(new QLabel(tr("    Encryption/Decryption Passwords"), this), QStringLiteral("lblHeading"));
    QFont bold = lblHeading_->font();
    bold.setBold(true);
    lblHeading_->setFont(bold);
    ListView1_ = named(new frmPasswordList(this), QStringLiteral("ListView1"));
    ListView1_->setAccessibleName(tr("Passwords"));
    lblSelect_ = new QLabel(tr("&Select Below to Edit"), this);
    lblSelect_->setBuddy(ListView1_);
    txtpassword_ = named(new QLineEdit(this), QStringLiteral("txtpassword"));
    txtpassword_->setAccessibleName(tr("Password"));
    // Keyboards on the screen are not to learn it.
    txtpassword_->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    // Digits, of which good passwords consist in part, are wider than the average letter.
    txtpassword_->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * (kShownCharacters + 2));
    lblEnter_ = new QLabel(tr("Enter &password here"), this);
    lblEnter_->setBuddy(txtpassword_);
    lblCase_ = new QLabel(tr("Note: Case Sensitive"), this);
    lblNote_ = named(new QLabel(this), QStringLiteral("lblNote"));
    lblNote_->setTextFormat(Qt::PlainText);
    lblNote_->setWordWrap(true);
    chkActive_ = named(new QCheckBox(tr("Ac&tive"), this), QStringLiteral("chkActive"));
    cmdAdd_ = named(new QPushButton(tr("&Add >>"), this), QStringLiteral("cmdAdd"));
    cmdEdit_ = named(new QPushButton(tr("&Edit >>"), this), QStringLiteral("cmdEdit"));
    cmdDelete_ = named<QPushButton>(new WideButton(tr("&Delete from List <<"), this), QStringLiteral("cmdDelete"));
    cmdDelete_->setToolTip(tr("Names deleted from this list will have to be manually reentered"));
    ExitButton_ = named(new QPushButton(tr("E&xit"), this), QStringLiteral("ExitButton"));
    ExitButton_->setAccessibleDescription(tr("Closes this window"));  // that of the main window ends the program
    cmdAdd_->setAccessibleName(tr("Add"));
    cmdEdit_->setAccessibleName(tr("Edit"));
    cmdDelete_->setAccessibleName(tr("Delete from List"));
    for (QPushButton* button : {cmdAdd_, cmdEdit_, cmdDelete_, ExitButton_}) button->setAutoDefault(true);
}

void frmEDPasswords::arrange() {
    auto* grid = new QGridLayout(this);
    grid->setHorizontalSpacing(2 * grid->horizontalSpacing());
    grid->addWidget(lblHeading_, 0, 0, 1, 2);
    grid->addWidget(lblSelect_, 1, 0);
    grid->addWidget(ListView1_, 2, 0);
    grid->addLayout(makeEntryColumn(*grid), 1, 1, 2, 1);
    grid->setColumnStretch(0, 5);
    grid->setColumnStretch(1, 4);
    grid->setRowStretch(2, 1);
}

QLayout* frmEDPasswords::makeEntryColumn(const QGridLayout& grid) {
    auto* column = new QVBoxLayout;
    column->setSpacing(grid.verticalSpacing());
    for (QWidget* control : std::initializer_list<QWidget*>{lblEnter_, txtpassword_, lblCase_, chkActive_, cmdAdd_,
                                                            cmdEdit_, cmdDelete_}) {
        keepPlace(*control);
        column->addWidget(control);
    }
    lblNote_->setMinimumHeight(2 * fontMetrics().lineSpacing());
    lblNote_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    column->insertWidget(3, lblNote_);
    column->addSpacing(fontMetrics().lineSpacing());
    column->addStretch(1);
    column->addWidget(ExitButton_);
    return column;
}

void frmEDPasswords::connectControls() {
    const auto forward = [this](auto* sender, auto signal, void (PasswordWindowEvents::*event)()) {
        connect(sender, signal, this, [this, event] {
            if (events_) (events_->*event)();
        });
    };
    connect(txtpassword_, &QLineEdit::textChanged, this, &frmEDPasswords::takeTypedText);
    forward(chkActive_, &QCheckBox::toggled, &PasswordWindowEvents::activeClicked);
    forward(ListView1_, &frmPasswordList::chosen, &PasswordWindowEvents::listClicked);
    forward(cmdAdd_, &QPushButton::clicked, &PasswordWindowEvents::addPressed);
    forward(cmdEdit_, &QPushButton::clicked, &PasswordWindowEvents::editPressed);
    forward(cmdDelete_, &QPushButton::clicked, &PasswordWindowEvents::deletePressed);
    forward(ExitButton_, &QPushButton::clicked, &PasswordWindowEvents::exitPressed);
}

void frmEDPasswords::pressShownButton() {
    for (QPushButton* button : {cmdAdd_, cmdEdit_})
        if (!button->isHidden()) return button->click();
}

void frmEDPasswords::takeTypedText() {
    const QString text = txtpassword_->text();
    const QString visible = withoutControlCharacters(text);
    if (visible != text) {
        const QSignalBlocker quiet(txtpassword_);
        txtpassword_->setText(visible);
    }
    if (events_) events_->passwordEdited();
}

std::string frmEDPasswords::enteredPassword() const { return txtpassword_->text().toStdString(); }

void frmEDPasswords::setEnteredPassword(const std::string& password) {
    const QSignalBlocker quiet(txtpassword_);
    txtpassword_->setText(QString::fromStdString(password));
}

bool frmEDPasswords::isActiveSet() const { return chkActive_->isChecked(); }

void frmEDPasswords::setActiveSet(bool set) {
    const QSignalBlocker quiet(chkActive_);
    chkActive_->setChecked(set);
}

void frmEDPasswords::showRows(const std::vector<PasswordRow>& rows) { ListView1_->showRows(rows); }

std::optional<std::size_t> frmEDPasswords::selectedRow() const { return ListView1_->selectedRow(); }

void frmEDPasswords::showControls(const PasswordControls& controls) {
    show(*cmdAdd_, controls.add);
    show(*cmdEdit_, controls.edit);
    show(*cmdDelete_, controls.erase);
    show(*chkActive_, controls.active);
}

// When a control is hidden, Qt gives its focus to the next one. That may be Delete or Exit, and the Enter key would
// then press it.
void frmEDPasswords::show(QWidget& control, bool shown) {
    if (control.isHidden() == !shown && control.isEnabled() == shown) return;
    if (!shown && focusWidget() == &control) txtpassword_->setFocus();
    control.setEnabled(shown);
    control.setVisible(shown);
}

void frmEDPasswords::setNote(const std::string& text) {
    lblNote_->setText(shownText(text));
    txtpassword_->setAccessibleDescription(lblNote_->text());
}

void frmEDPasswords::focusPassword() { txtpassword_->setFocus(); }

void frmEDPasswords::focusActive() { chkActive_->setFocus(); }

void frmEDPasswords::showWindow() {
    if (!isVisible()) {
        layout()->activate();
        resize(QSize(kNormalWidth, kNormalHeight).expandedTo(minimumSizeHint()));
    }
    closesForGood_ = false;
    setWindowState(windowState() & ~Qt::WindowMinimized);
    if (!isVisible()) standBesideMainWindow();
    QWidget::show();
    raise();
    activateWindow();
}

// This window stays above the others, and would cover it.
void frmEDPasswords::standBesideMainWindow() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto main = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->objectName() == QStringLiteral("frmMain") && window->isVisible();
    });
    if (main == windows.end()) return;
    const QRect room = (*main)->screen()->availableGeometry();
    const QRect beside = (*main)->frameGeometry();
    const int frame = beside.width() - (*main)->width();
    if (beside.right() + 1 + width() + frame <= room.right() + 1)
        move(beside.right() + 1, beside.top());
    else if (beside.left() - width() - frame >= room.left())
        move(beside.left() - width() - frame, beside.top());
}

// The field and the check box leave the Enter key to the window; in the list it is no wish to change anything.
void frmEDPasswords::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !ListView1_->hasFocus()) return pressShownButton();
    if (event->matches(QKeySequence::Cancel) && events_) return events_->exitPressed();
    QWidget::keyPressEvent(event);
}

void frmEDPasswords::closeWindow() {
    closesForGood_ = true;
    close();
}

void frmEDPasswords::closeEvent(QCloseEvent* event) {
    const bool isCloseBox = event->spontaneous() && !closesForGood_ && !qGuiApp->isSavingSession();
    event->setAccepted(!isCloseBox);
    if (isCloseBox && events_) events_->closeBoxPressed();
}

}  // namespace vantrell
