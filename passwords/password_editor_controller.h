// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/active_password.h"
#include "core/ending.h"
#include "passwords/password_editor.h"
#include "passwords/password_editor_state.h"
#include "passwords/password_entries.h"
#include "passwords/password_store.h"
#include "passwords/password_window.h"
#include "platform/message_boxes.h"
#include "task/task_group.h"

namespace vantrell {

/// Decides what the password editor does: its questions, and what is saved and deleted. One object for the whole run;
/// the window is opened, closed and opened again.
///
/// Add, Edit, Delete and Exit take what stands in the window at the moment of the click. While one of them is at work
/// or has a question open, further clicks on them do nothing; leaving waits for the work, and takes the question back.
/// After a failure, of which a box has told, text and list stand as they were and the window stays open.
class PasswordEditorController final : public PasswordEditor,
                                       public PasswordWindowEvents,
                                       public PasswordEditorEntry,
                                       public Endable {
public:
    /// Everything outlives the controller.
    PasswordEditorController(PasswordStore& store, ActivePassword& password, PasswordWindow& window,
                             MessageBoxes& boxes, RunQueue& queue);
    ~PasswordEditorController() override;

    void open() override;
    /// Closes the window at once and drops all work of its own; what was not yet saved is undone.
    void abort() override;

    [[nodiscard]] std::string enteredPassword() const override;
    [[nodiscard]] bool activeChoice() const override;
    [[nodiscard]] bool isInUse() override { return !acting_.isIdle() || !window_.enteredPassword().empty(); }
    void clearList() override { arriving_.clear(); }
    void addRow(const std::string& password, const std::string& activeText) override;
    void showAddButton() override;
    void unload() override;

    void passwordEdited() override;
    void activeClicked() override;
    void listClicked() override;
    void addPressed() override { startAction(onEntry(add())); }
    void editPressed() override { startAction(onEntry(edit())); }
    void deletePressed() override { startAction(onEntry(erase())); }
    void exitPressed() override { leave(Leaving::exit); }
    void closeBoxPressed() override { leave(Leaving::close); }

private:
    enum class Leaving { no, close, exit };
    /// `refused`: not confirmed, or nothing to do. `failed`: a box has told; text and list are to stand.
    enum class Outcome { done, refused, failed };
    struct Entry {
        std::string password;
        bool active = false;
    };
    /// What text and list ask for and the buttons do not show yet, since the table has to be read first.
    struct Unsettled {
        bool find = false;
        bool click = false;
        std::optional<bool> active;  // of the row that was clicked
        std::optional<bool> ticked;  // the operator's own click on the Active box
    };

    void startAction(Task<Outcome> action);
    Task<void> act(Task<Outcome> action);
    Task<Outcome> onEntry(Task<Outcome> action);
    Task<Outcome> fillAtOpening();
    Task<Outcome> add();
    Task<Outcome> edit();
    Task<Outcome> erase();
    Task<Outcome> nothing() { co_return Outcome::done; }
    Task<Outcome> saveEntry();
    Task<void> findCurrentPassword();

    void startSettling();
    Task<void> settleLater();
    Task<bool> settle();
    void applyClick(std::optional<bool> active);
    Task<bool> findRecord();
    Task<void> emptyText();
    [[nodiscard]] bool isEntryStanding() const;

    Task<bool> isConfirmed(std::string text, bool defaultIsNo);
    Outcome tell(std::string title, std::string text, Outcome outcome);
    void leave(Leaving how);
    void closeSoon();
    Task<void> closeLater();
    void load();
    void dropWork();

    void setText(const std::string& text);
    void removeSelectedRow();
    void removeRowOf(const std::string& password);
    void listArrived();
    void restoreList();

    PasswordStore& store_;
    ActivePassword& password_;
    PasswordWindow& window_;
    MessageBoxes& boxes_;
    PasswordEditorState buttons_;

    bool isLoaded_ = false;
    bool isListed_ = false;  // the list has been filled since the window was opened
    Leaving leaving_ = Leaving::no;
    Unsettled unsettled_;
    std::optional<Entry> entry_;              // what the action at work is about
    std::optional<Ticket<Answer>> question_;  // the one that is open
    std::vector<PasswordRow> arriving_;       // what the store is filling in
    std::vector<PasswordRow> listed_;         // what it has filled in last
    std::vector<PasswordRow> shown_;          // what the list shows: without a row that is about to go

    TaskGroup settling_;
    TaskGroup acting_;
    TaskGroup closing_;
};

}  // namespace vantrell
