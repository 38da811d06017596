// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "passwords/password_operations.h"
#include "task/task_lock.h"

namespace vantrell {

/// The passwords with which files are encrypted, one of which is the active one: the table "EncDecPasswords".
/// One object for the whole run; it outlives all tasks that use it.
///
/// Operations wait for each other. An operation answers True when it did what it is for; otherwise a box that nobody
/// waits for has told the operator why, and the table is as it was. A file that another
/// program holds locked is tried again for 5 s. Destroying the task of an operation undoes what it had not finished.
class PasswordStore {
public:
    /// `file` is the password file; `fileExists` answers whether a regular file stands under a path.
    PasswordStore(RunQueue& queue, Database& database, MessageBoxes& boxes, Path file,
                  std::function<bool(const Path&)> fileExists);

    /// The loaded editor: its list is filled and its entry is saved. One that was attached before is let go.
    void attachEditor(PasswordEditor& editor);
    /// To be called when the editor closes, for whatever reason. Closes the store objects unless another editor has
    /// been attached meanwhile, or a lookup is at work, which does it at its end.
    void detachEditor(PasswordEditor& editor);
    /// Null when no editor is loaded.
    [[nodiscard]] PasswordEditor* editor() const { return operations_.editor(); }
    /// Closes the objects, lets go of the editor and asks it to close; does nothing when none is loaded.
    void unloadEditor();

    /// When the editor opens: fills its list. A missing file unloads it.
    Task<bool> openPasswordStore();
    /// Fills the list again; an empty table puts the editor into its new-password state.
    Task<bool> initializeRecordset();
    /// The same, and says so when the table is empty.
    Task<bool> reInitializeRecordset();
    /// All records in the table's order; nothing after a failure.
    Task<std::optional<std::vector<PasswordRecord>>> readRecords();
    /// The password of the first active record, empty when there is none; nothing after a failure. One that holds
    /// characters outside ASCII does not become the active password: a box says so, and it is empty. A loaded editor's
    /// list is filled; a missing file unloads it.
    Task<std::optional<std::string>> findCurrentPassword();
    /// The same for everybody but the editor: an editor that nobody is using is closed, whatever comes of it; one with
    /// typed text, an open question or work of its own stays as it is.
    Task<std::optional<std::string>> lookUpActivePassword();
    /// Saves the entered password with the Active choice, in one transaction, and fills the list again. An existing
    /// password only changes its flag. True only when it was saved and listed.
    Task<bool> savePassword();
    /// Deletes the first record of the entered password. True also when there was none.
    Task<bool> deleteRecord();

    /// Whether an operation is at work or waiting for a locked file.
    [[nodiscard]] bool isBusy() const { return lock_.isHeld(); }
    /// Releases the database file, before it is replaced or at the end of the program. What is being written and not
    /// yet committed is undone, and its operation ends with an error.
    void closeStoreObjects() { operations_.objects().close(); }

private:
    template <class Value>
    Task<Value> alone(Task<Value> (PasswordOperations::*operation)());

    TaskLock lock_;
    PasswordOperations operations_;
};

}  // namespace vantrell
