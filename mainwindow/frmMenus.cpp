// SPDX-License-Identifier: MIT
#include "mainwindow/frmMenus.h"

#include <QGuiApplication>
#include <QPalette>

namespace vantrell {

namespace {

QString startupStateText(StartupEntry::State state) {
    switch (state) {
        case StartupEntry::State::switchedOff:
            return QObject::tr("Added to Startup (switched off by the desktop)");
        case StartupEntry::State::elsewhere:
            return QObject::tr("Added to Startup (starts another copy)");
        case StartupEntry::State::works:
        case StartupEntry::State::none:
            break;
    }
    return {};
}

/// The disabled entry in this menu is a message, so it must be as easy to read as the others.
void keepDisabledReadable(QMenu& menu) {
    QPalette palette = QGuiApplication::palette();
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const auto between = [](int here, int there) { return (7 * here + 3 * there) / 10; };
    const QColor readable(between(text.red(), base.red()), between(text.green(), base.green()),
                          between(text.blue(), base.blue()));
    palette.setColor(QPalette::Disabled, QPalette::Text, readable);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, readable);
    menu.setPalette(palette);
}

void mark(QAction& entry, bool checked) {
    entry.setData(checked);
    entry.setChecked(checked);
}

}  // namespace

frmMenus::frmMenus(QMenuBar& bar, QObject* parent) : QObject(parent), bar_(bar) {
    bar_.setAccessibleName(tr("Menu bar"));
    addStartupMenu();
    addFilesMenu();
    addViewMenu();
    QAction* about = bar_.addAction(tr("&About"));
    about->setObjectName(QStringLiteral("mnuabout"));
    about->setMenuRole(QAction::NoRole);
    connect(about, &QAction::triggered, this, [this] {
        if (listeners_ != nullptr) listeners_->about.aboutChosen();
    });
}

void frmMenus::addStartupMenu() {
    QMenu& startup = *addMenu(QStringLiteral("mnuStartup"), tr("Start Up &Options"),
                              tr("When the program starts, and what it does then"));
    addEntry(startup, QStringLiteral("mnAddtoStartup"), tr("&Add to Startup"),
             [](auto& to) { to.options.mnAddtoStartup(); });
    addEntry(startup, QStringLiteral("mnuRemoveFromStartup"), tr("&Remove From  Start UP"),
             [](auto& to) { to.options.mnuRemoveFromStartup(); });
    startupState_ = startup.addAction(QString());
    startupState_->setObjectName(QStringLiteral("startupState"));
    startupState_->setEnabled(false);
    startupState_->setVisible(false);
    connect(&startup, &QMenu::aboutToShow, this, [this, &startup] {
        keepDisabledReadable(startup);
        if (listeners_ != nullptr) listeners_->options.startupMenuOpens();
    });
    startup.addSeparator();
    mnuStartOnLoad_ =
        addCheckMark(startup, QStringLiteral("mnuStartOnLoad"), tr("&Start and Run Continually at program Start Up?"),
                     [](auto& to) { to.options.mnuStartOnLoad(); });
    mnmax_ = addCheckMark(startup, QStringLiteral("mnmax"), tr("Run &Normal (Not Minimized) at Start Up?"),
                          [](auto& to) { to.options.mnmax(); });
}

void frmMenus::addFilesMenu() {
    QMenu& files = *addMenu(QStringLiteral("mnuPasswordsAndFiles"), tr("Passwords and &Files"),
                            tr("How passwords and files are treated"));
    addEntry(files, QStringLiteral("mnuPasswords"), tr("Update/Add &Passwords"),
             [](auto& to) { to.passwordEditor.open(); });
    files.addSeparator();
    addEntry(files, QStringLiteral("mnBackup"), tr("&Backup Current Configuration Files"),
             [](auto& to) { to.backups.mnBackup(); });
    addRestoreMenu(files);
    files.addSeparator();
    mnOW_ = addCheckMark(files, QStringLiteral("mnOW"), tr("&Overwrite Existing Files"),
                         [](auto& to) { to.options.mnOW(); });
    addEntry(files, QStringLiteral("mnDeleteDone"), tr("&Manually Delete Done Files"),
             [](auto& to) { to.deleteDone.mnDeleteDone(); });
}

void frmMenus::addViewMenu() {
    QMenu& view = *addMenu(QStringLiteral("mnview"), tr("&View"), tr("The log and the current password"));
    addEntry(view, QStringLiteral("mnviewCL"), tr("View &Current Log"),
             [](auto& to) { to.log.viewCurrentLogChosen(); });
    addEntry(view, QStringLiteral("mnuCurrentPass"), tr("View Current &Password"),
             [](auto& to) { to.currentPassword.viewCurrentPasswordChosen(); });
    addEntry(view, QStringLiteral("mnuHsitoryDaily"), tr("&Select DailyHistory File to View"),
             [](auto& to) { to.history.open(); });
    view.addSeparator();
    mnLogOffOn_ = addCheckMark(view, QStringLiteral("mnLogOffOn"), tr("Turn &Off Loging"),
                               [](auto& to) { to.log.turnOffLoggingChosen(); });
}

void frmMenus::addRestoreMenu(QMenu& files) {
    QMenu& restore = *files.addMenu(tr("&Restore Configuration Or Pasword  File From Backup"));
    describe(restore, QStringLiteral("mnOLB"), tr("Which file, and from which of the two backups"));
    addEntry(restore, QStringLiteral("mnONLBackup"),
             tr("Restore &Configuration File Using the Unload Backup (Most Current)"),
             [](auto& to) { to.backups.mnONLBackup(); });
    addEntry(restore, QStringLiteral("mnuNBU"),
             tr("Restore Configuration File Using  the &Normal Backup (Manul Backup)"),
             [](auto& to) { to.backups.mnuNBU(); });
    addEntry(restore, QStringLiteral("mnuRPassOn"), tr("Restore &Password File Using the Unload Backup (Most Current)"),
             [](auto& to) { to.backups.mnuRPassOn(); });
    addEntry(restore, QStringLiteral("mnuPassNormal"),
             tr("Restore Pass&word  File Using  the Normal Backup (Manul Backup)"),
             [](auto& to) { to.backups.mnuPassNormal(); });
}

QMenu* frmMenus::addMenu(const QString& name, const QString& caption, const QString& description) {
    QMenu* menu = bar_.addMenu(caption);
    describe(*menu, name, description);
    return menu;
}

void frmMenus::describe(QMenu& menu, const QString& name, const QString& description) {
    menu.setObjectName(name);
    menu.menuAction()->setObjectName(name);
    menu.setAccessibleName(menu.title().remove(QLatin1Char('&')));
    menu.setAccessibleDescription(description);
}

QAction* frmMenus::addEntry(QMenu& menu, const QString& name, const QString& caption, Choice choice) {
    QAction* entry = menu.addAction(caption);
    entry->setObjectName(name);
    entry->setMenuRole(QAction::NoRole);
    connect(entry, &QAction::triggered, this, [this, entry, choice] {
        entry->setChecked(entry->data().toBool());  // the click has moved the mark
        if (listeners_ != nullptr) choice(*listeners_);
    });
    return entry;
}

QAction* frmMenus::addCheckMark(QMenu& menu, const QString& name, const QString& caption, Choice choice) {
    QAction* entry = addEntry(menu, name, caption, choice);
    entry->setCheckable(true);
    mark(*entry, false);
    return entry;
}

void frmMenus::showSettings(const SettingsRecord& settings) {
    mark(*mnuStartOnLoad_, settings.RunContinuallyAtStartup);
    mark(*mnmax_, settings.RunNormalAtStartup);
    mark(*mnOW_, settings.OverwriteExistingFiles);
    mark(*mnLogOffOn_, settings.LoggingTurnedOff);
}

void frmMenus::setStartupEntry(StartupEntry::State state) {
    const QString text = startupStateText(state);
    startupState_->setText(text);
    startupState_->setVisible(!text.isEmpty());
}

}  // namespace vantrell
