// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QObject>

#include "core/program_state.h"
#include "mainwindow/main_window_listeners.h"
#include "platform/startup_entry.h"

namespace vantrell {

/// The menu bar of the main window. A check mark shows what the settings say. Choosing an entry does not change its
/// mark; the mark changes when the setting has changed.
class frmMenus final : public QObject {
    Q_OBJECT

public:
    /// Fills the bar, which must outlive this.
    explicit frmMenus(QMenuBar& bar, QObject* parent = nullptr);

    /// Who is told what is chosen; null: nobody. Must outlive the menus or be taken back before.
    void setListeners(const MainWindowListeners* listeners) { listeners_ = listeners; }

    void showSettings(const SettingsRecord& settings);
    void setStartupEntry(StartupEntry::State state);

private:
    /// Tells the entry's room that it was chosen.
    using Choice = void (*)(const MainWindowListeners& to);

    QMenu* addMenu(const QString& name, const QString& caption, const QString& description);
    static void describe(QMenu& menu, const QString& name, const QString& description);
    void addStartupMenu();
    void addFilesMenu();
    void addViewMenu();
    void addRestoreMenu(QMenu& files);
    QAction* addEntry(QMenu& menu, const QString& name, const QString& caption, Choice choice);
    QAction* addCheckMark(QMenu& menu, const QString& name, const QString& caption, Choice choice);

    QMenuBar& bar_;
    const MainWindowListeners* listeners_ = nullptr;
    QAction* startupState_ = nullptr;
    QAction* mnuStartOnLoad_ = nullptr;
    QAction* mnmax_ = nullptr;
    QAction* mnOW_ = nullptr;
    QAction* mnLogOffOn_ = nullptr;
};

}  // namespace vantrell
