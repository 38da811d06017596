// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "folderpicker/frmButton.h"

namespace vantrell {

/// The folder picker as the windows use it: set it up, then ask it for one pick. It is an invisible child of its
/// owner's window, and it remembers the place of the chooser from one pick to the next.
///
/// A pick blocks the owner window, but no event loop: its outcome comes through a function.
class MK1 final : public QWidget {
    Q_OBJECT

public:
    /// Called once, when the pick has ended: the chosen folder in the host's bytes, without a separator at its end
    /// ("/" for the root); empty after Cancel. Not called when the pick is withdrawn.
    using Outcome = std::function<void(const Path&)>;

    /// The toolbox must outlive it.
    explicit MK1(FileToolbox& toolbox, QWidget* parent = nullptr);
    ~MK1() override;

    void setParentForm(QWidget* owner) { ParentForm_ = owner; }
    /// The folder on which the chooser opens. An empty path means the home folder. For a folder that no longer exists
    /// it is the nearest existing folder above it.
    void setInitDir(Path folder) { InitDir_ = std::move(folder); }
    /// The title of the chooser's window (UTF-8), such as what the folder is for; empty: the line above the folders.
    void setCaption(std::string caption) { Caption_ = std::move(caption); }
    /// The line above the folders (UTF-8); empty: "Select a Folder".
    void setTitle(std::string title) { Title_ = std::move(title); }
    /// For `SaveBrowse`.
    void setShowCreate(bool show) { ShowCreate_ = show; }
    /// For `OpenBrowse`.
    void setShowRecurse(bool show) { ShowRecurse_ = show; }
    /// Whether "INCLUDE SUBFOLDERS" was ticked when the last pick ended.
    [[nodiscard]] bool DoRecurse() const { return RecurseChosen_; }

    /// Picks with the Create button, when that is to be shown. While a pick is under way, that one is brought to the
    /// front, and nothing else happens: then the answer is False.
    bool SaveBrowse(Outcome outcome) { return browse(ShowCreate_, false, std::move(outcome)); }
    /// Picks with the check box for sub-folders, when that is to be shown.
    bool OpenBrowse(Outcome outcome) { return browse(false, ShowRecurse_, std::move(outcome)); }
    /// Ends a pick that is under way without an outcome.
    void withdraw();
    [[nodiscard]] bool isPicking() const { return !dialog_.isNull(); }

private:
    bool browse(bool showsCreate, bool showsRecurse, Outcome outcome);
    void rememberPlace(const QRect& place);

    FileToolbox& toolbox_;
    QPointer<QWidget> ParentForm_;
    Path InitDir_;
    std::string Caption_;
    std::string Title_;
    bool ShowCreate_ = false;
    bool ShowRecurse_ = false;
    bool RecurseChosen_ = false;
    QRect DlgRect_;
    bool KeepDlgRect_ = false;
    QSize lastSize_;
    QPointer<frmButton> dialog_;
};

}  // namespace vantrell
