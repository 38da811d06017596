// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/path.h"
#include "passwords/password_editor.h"
#include "passwords/store_objects.h"
#include "platform/message_boxes.h"

namespace vantrell {

/// One record of the password table.
struct PasswordRecord {
    std::string Password;
    bool Active = false;

    bool operator==(const PasswordRecord&) const = default;
};

/// The operations of the password store, step by step. They share one connection and one record set, so only one of
/// them may run at a time: PasswordStore sees to that.
///
/// Every operation answers True when it did what it is for. Otherwise the operator has been told in a box.
class PasswordOperations {
public:
    PasswordOperations(Database& database, MessageBoxes& boxes, Path file, std::function<bool(const Path&)> fileExists);
    PasswordOperations(const PasswordOperations&) = delete;
    PasswordOperations& operator=(const PasswordOperations&) = delete;

    void setEditor(PasswordEditor* editor) { editor_ = editor; }
    [[nodiscard]] PasswordEditor* editor() const { return editor_; }
    /// Lets go of the editor, closes the store objects, and asks the editor to close.
    void unloadEditor();
    [[nodiscard]] StoreObjects& objects() { return objects_; }

    Task<bool> openPasswordStore();
    Task<bool> initializeRecordset();
    Task<bool> reInitializeRecordset();
    Task<std::optional<std::string>> findCurrentPassword();
    Task<std::optional<std::string>> lookUpActivePassword();
    Task<bool> savePassword();
    Task<bool> deleteRecord();
    Task<std::optional<std::vector<PasswordRecord>>> readRecords();

private:
    struct Entry {
        std::string password;
        bool active = false;
    };
    struct RowSearch {
        bool found = false;
        DatabaseError error;
    };
    struct RecordResult {
        PasswordRecord record;
        DatabaseError error;
    };

    bool isThere();
    void list(const std::vector<PasswordRecord>& records);
    std::string activeAmong(const std::vector<PasswordRecord>& records);
    void setStoreParameters();
    Task<bool> reconnectAndOpen(OpenMode mode);
    Task<DatabaseError> openInMode(OpenMode mode);
    Task<DatabaseError> saveInOneTransaction(Entry entry, bool* existed);
    Task<DatabaseError> saveEntry(Entry entry, bool* existed);
    Task<DatabaseError> deleteInOneTransaction(std::string password);
    Task<DatabaseError> clearActiveFlags();
    Task<DatabaseError> updateActiveFlag(Entry entry);
    Task<DatabaseError> addRecord(Entry entry);

    [[nodiscard]] static RecordResult currentRecord(const Recordset& records);
    /// Stands on the first row with this password, compared byte by byte.
    [[nodiscard]] static RowSearch findRow(Recordset& records, const std::string& password);
    [[nodiscard]] bool fillList();
    bool report(const DatabaseError& error);
    void reportPasswordOutsideAscii();

    MessageBoxes& boxes_;
    const Path file_;
    std::function<bool(const Path&)> fileExists_;
    StoreObjects objects_;
    PasswordEditor* editor_ = nullptr;
};

}  // namespace vantrell
