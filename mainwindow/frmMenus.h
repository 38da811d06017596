// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QObject>

#include "core/main_window_events.h"
#include "core/program_state.h"
#include "platform/startup_entry.h"

namespace vantrell {

/// The menu bar of the main window. A check mark says what the settings say: choosing an entry does not move it, what
/// comes of the choice does.
class frmMenus final : public QObject {
    Q_OBJECT

public:
    using Event = void (MainWindowEvents::*)();

    /// Fills the bar, which must outlive this.
    explicit frmMenus(QMenuBar& bar, QObject* parent = nullptr);

    void showSettings(const SettingsRecord& settings);
    void setStartupEntry(StartupEntry::State state);

Q_SIGNALS:
    void chosen(vantrell::frmMenus::Event event);

private:
    QMenu* addMenu(const QString& name, const QString& caption, const QString& description);
    static void describe(QMenu& menu, const QString& name, const QString& description);
    void addRestoreMenu(QMenu& files);
    QAction* addEntry(QMenu& menu, const QString& name, const QString& caption, Event event);
    QAction* addCheckMark(QMenu& menu, const QString& name, const QString& caption, Event event);

    QMenuBar& bar_;
    QAction* startupState_ = nullptr;
    QAction* mnuStartOnLoad_ = nullptr;
    QAction* mnmax_ = nullptr;
    QAction* mnOW_ = nullptr;
    QAction* mnLogOffOn_ = nullptr;
};

}  // namespace vantrell
