// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>

#include "platform/file_toolbox.h"
#include "widgets/elided_label.h"

namespace vantrell {

/// The chooser for one pick: Qt's own folder dialog, with a title line above it and, below, the full path of the
/// selection and, when asked for, the button that creates a folder or the check box for sub-folders.
///
/// The name of a new folder is asked for inside the dialog. After the folder has been created, the dialog stays open at
/// its place and the new folder is selected.
class frmButton final : public QFileDialog {
    Q_OBJECT

public:
    struct Order {
        QString caption;  ///< of the window; empty: the title
        QString title;    ///< the line above the folders
        Path folder;      ///< an existing one
        bool showsCreate = false;
        bool showsRecurse = false;
    };
    /// The toolbox must outlive the dialog.
    frmButton(const Order& order, FileToolbox& toolbox, QWidget* parent);

    /// The selected folder, without a separator at its end (the root is "/"); it may not exist while it is being typed.
    /// A folder whose name is not UTF-8 stays selected until the operator selects another one.
    [[nodiscard]] Path selection() const;
    [[nodiscard]] bool isRecurseTicked() const { return Check1_->isChecked(); }

Q_SIGNALS:
    /// The operator has entered a name for a new folder: the dialog's place is to be remembered.
    void createAsked(const QRect& place);

protected:
    void accept() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openOn(const Path& folder);
    /// What Qt's dialog has selected.
    [[nodiscard]] Path namedSelection() const;
    void arrange(const Order& order);
    void makeExtras(const Order& order);
    void makePrompt();
    void sizeToFont();
    void makeSuggestions();
    void connectControls();

    void selectionChanged();
    void reopenWhenDropped();
    void suggest();
    bool takeSuggestion();
    void openPrompt(bool open);
    [[nodiscard]] QRect placeWithoutPrompt() const;
    void createFolderAsTyped();
    void refuse(const std::string& words);

    FileToolbox& toolbox_;
    Path unnamed_;          // the folder it was opened on, when Qt's dialog has no name for it
    Path openedOn_;         // what Qt's dialog had selected then
    QSize sizeBefore_;      // before the prompt was opened
    QSize sizeWithPrompt_;  // what the prompt made of it
    QLineEdit* field_ = nullptr;
    QCompleter* suggestions_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    ElidedLabel* lblStatus_ = nullptr;
    QWidget* extras_ = nullptr;
    QPushButton* Command1_ = nullptr;
    QCheckBox* Check1_ = nullptr;
    QGroupBox* prompt_ = nullptr;
    QLineEdit* txtName_ = nullptr;
    QPushButton* cmdNameOk_ = nullptr;
    QPushButton* cmdNameCancel_ = nullptr;
};

}  // namespace vantrell
