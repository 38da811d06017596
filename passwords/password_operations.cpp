// SPDX-License-Identifier: MIT
#include "passwords/password_operations.h"

#include <algorithm>
#include <utility>

#include "core/data_folder.h"
#include "passwords/ascii_password.h"

namespace vantrell {

namespace {

constexpr char kPasswordField[] = "Password";
constexpr char kActiveField[] = "Active";

}  // namespace

PasswordOperations::PasswordOperations(Database& database, MessageBoxes& boxes, Path file,
                                       std::function<bool(const Path&)> fileExists)
    : boxes_(boxes), file_(std::move(file)), fileExists_(std::move(fileExists)), objects_(database) {}

void PasswordOperations::unloadEditor() {
    PasswordEditor* const editor = std::exchange(editor_, nullptr);
    objects_.close();
    if (editor != nullptr) editor->unload();
}

bool PasswordOperations::report(const DatabaseError& error) {
    if (!error) return true;
    boxes_.inform({kApplicationTitle, std::to_string(error.number) + "  " + error.description});
    return false;
}

// Opening and listing

bool PasswordOperations::isThere() {
    if (fileExists_(file_)) return true;
    boxes_.inform({kApplicationTitle, "Missing Data Base"});
    return false;
}

void PasswordOperations::setStoreParameters() {
    objects_.setParameters({"MSACCESS", file_, kPasswordTableName, {}, {}});
}

Task<bool> PasswordOperations::openPasswordStore() {
    if (!isThere()) {
        unloadEditor();
        co_return false;
    }
    setStoreParameters();
    if (!report(co_await objects_.connectPasswordStore())) co_return false;
    co_return co_await initializeRecordset();
}

Task<DatabaseError> PasswordOperations::openInMode(OpenMode mode) {
    DatabaseError error = co_await objects_.openRecordset(mode, objects_.ListingQuery());
    if (objects_.isRecordsetOpen()) co_return DatabaseError{};
    if (!error) error = {adErrObjectClosed, "The password file was closed meanwhile."};
    co_return error;
}

Task<bool> PasswordOperations::reconnectAndOpen(OpenMode mode) {
    setStoreParameters();
    DatabaseError error = co_await objects_.reconnectPasswordStore();
    if (!error) error = co_await openInMode(mode);
    co_return report(error);
}

Task<bool> PasswordOperations::initializeRecordset() {
    if (editor_ != nullptr) editor_->clearList();
    if (!co_await reconnectAndOpen(OpenMode::command)) co_return false;
    if (objects_.recordset()->recordCount() > 0) co_return fillList();
    if (editor_ != nullptr) editor_->showAddButton();
    co_return true;
}

Task<bool> PasswordOperations::reInitializeRecordset() {
    if (editor_ != nullptr) editor_->clearList();
    if (!co_await reconnectAndOpen(OpenMode::command)) co_return false;
    if (objects_.recordset()->recordCount() != 0) co_return fillList();
    boxes_.inform({kApplicationTitle, "There is not any passwords defined."});
    if (editor_ != nullptr) editor_->showAddButton();
    co_return true;
}

PasswordOperations::RecordResult PasswordOperations::currentRecord(const Recordset& records) {
    const FieldResult password = records.value(kPasswordField);
    if (password.error) return {{}, password.error};
    const FieldResult active = records.value(kActiveField);
    return {{textOf(password.value), booleanOf(active.value)}, active.error};
}

bool PasswordOperations::fillList() {
    const auto records = objects_.recordset();
    for (records->moveFirst(); !records->eof(); records->moveNext()) {
        const auto [record, error] = currentRecord(*records);
        if (error) return report(error);
        if (editor_ != nullptr) editor_->addRow(record.Password, record.Active ? "True" : "False");
    }
    return true;
}

Task<std::optional<std::vector<PasswordRecord>>> PasswordOperations::readRecords() {
    if (!co_await reconnectAndOpen(OpenMode::command)) co_return std::nullopt;
    const auto records = objects_.recordset();
    std::vector<PasswordRecord> list;
    for (; !records->eof(); records->moveNext()) {
        auto [record, error] = currentRecord(*records);
        if (!report(error)) co_return std::nullopt;
        list.push_back(std::move(record));
    }
    co_return list;
}

void PasswordOperations::list(const std::vector<PasswordRecord>& records) {
    if (editor_ == nullptr) return;
    editor_->clearList();
    for (const PasswordRecord& record : records) editor_->addRow(record.Password, record.Active ? "True" : "False");
    if (records.empty()) editor_->showAddButton();
}

// The active password

Task<std::optional<std::string>> PasswordOperations::findCurrentPassword() {
    if (!isThere()) {
        unloadEditor();
        co_return std::nullopt;
    }
    const auto records = co_await readRecords();
    if (!records) co_return std::nullopt;
    list(*records);
    co_return activeAmong(*records);
}

Task<std::optional<std::string>> PasswordOperations::lookUpActivePassword() {
    if (!isThere()) co_return std::nullopt;
    const auto records = co_await readRecords();
    if (!records) co_return std::nullopt;
    co_return activeAmong(*records);
}

std::string PasswordOperations::activeAmong(const std::vector<PasswordRecord>& records) {
    const auto active =
        std::find_if(records.begin(), records.end(), [](const PasswordRecord& record) { return record.Active; });
    if (active == records.end()) return {};
    if (isAsciiPassword(active->Password)) return active->Password;
    reportPasswordOutsideAscii();
    return {};
}

void PasswordOperations::reportPasswordOutsideAscii() {
    boxes_.inform({kApplicationTitle,
                   "The active password holds characters outside ASCII (such as accented letters). Files cannot be "
                   "encrypted with it, so there is no active password. Please make another password active."});
}

// Writing

Task<bool> PasswordOperations::savePassword() {
    if (editor_ == nullptr) co_return false;
    // Taken once: what is typed while the file is locked by another belongs to the next save.
    Entry entry{editor_->enteredPassword(), editor_->activeChoice()};
    bool existed = false;
    if (!report(co_await saveInOneTransaction(std::move(entry), &existed))) co_return false;
    if (existed) co_return co_await reInitializeRecordset();
    co_return co_await initializeRecordset();
}

Task<DatabaseError> PasswordOperations::saveInOneTransaction(Entry entry, bool* existed) {
    setStoreParameters();
    DatabaseError error = co_await objects_.reconnectPasswordStore();
    if (error) co_return error;
    StoreTransaction transaction(objects_);
    error = co_await transaction.begin();
    if (!error) error = co_await saveEntry(std::move(entry), existed);
    if (!error) error = co_await transaction.commit();
    co_return error;
}

Task<DatabaseError> PasswordOperations::saveEntry(Entry entry, bool* existed) {
    DatabaseError error;
    if (entry.active) error = co_await clearActiveFlags();
    if (!error) error = co_await objects_.reconnectPasswordStore();
    if (!error) error = co_await openInMode(OpenMode::command);
    if (error) co_return error;
    const RowSearch search = findRow(*objects_.recordset(), entry.password);
    objects_.closeRecordset();
    if (search.error) co_return search.error;
    *existed = search.found;
    if (search.found) co_return co_await updateActiveFlag(std::move(entry));
    co_return co_await addRecord(std::move(entry));
}

PasswordOperations::RowSearch PasswordOperations::findRow(Recordset& records, const std::string& password) {
    for (; !records.eof(); records.moveNext()) {
        const auto [record, error] = currentRecord(records);
        if (error) return {false, error};
        if (record.Password == password) return {true, {}};
    }
    return {};
}

Task<DatabaseError> PasswordOperations::clearActiveFlags() {
    DatabaseError error = co_await objects_.reconnectPasswordStore();
    if (!error) error = co_await openInMode(OpenMode::updatableClientSide);
    if (error) co_return error;
    const auto records = objects_.recordset();
    for (; !records->eof(); records->moveNext()) {
        error = records->setValue(kActiveField, false);
        if (!error) error = co_await records->update();
        if (error) co_return error;
    }
    error = co_await records->requery(adOptionUnspecified);
    records->close();
    co_return error;
}

Task<DatabaseError> PasswordOperations::updateActiveFlag(Entry entry) {
    DatabaseError error = co_await objects_.reconnectPasswordStore();
    if (!error) error = co_await openInMode(OpenMode::updatableClientSide);
    if (error) co_return error;
    const auto records = objects_.recordset();
    const RowSearch search = findRow(*records, entry.password);
    if (search.error || !search.found) co_return search.error;
    error = records->setValue(kActiveField, entry.active);
    if (!error) error = co_await records->update();
    co_return error;
}

Task<DatabaseError> PasswordOperations::addRecord(Entry entry) {
    DatabaseError error = co_await objects_.reconnectPasswordStore();
    if (error) co_return error;
    objects_.useGivenQuery();
    error = co_await openInMode(OpenMode::updatableServerSide);
    if (error) co_return error;
    const auto records = objects_.recordset();
    error = records->addNew();
    if (!error) error = records->setValue(kPasswordField, entry.password);
    if (!error) error = records->setValue(kActiveField, entry.active);
    if (!error) error = co_await records->update();
    if (!error) error = co_await records->requery(adOptionUnspecified);
    co_return error;
}

Task<bool> PasswordOperations::deleteRecord() {
    if (editor_ == nullptr) co_return false;
    std::string password = editor_->enteredPassword();
    if (!co_await openPasswordStore()) co_return false;
    co_return report(co_await deleteInOneTransaction(std::move(password)));
}

Task<DatabaseError> PasswordOperations::deleteInOneTransaction(std::string password) {
    DatabaseError error = co_await objects_.reconnectPasswordStore();
    if (error) co_return error;
    StoreTransaction transaction(objects_);
    error = co_await transaction.begin();
    if (!error) error = co_await openInMode(OpenMode::updatableClientSide);
    if (error) co_return error;
    const auto records = objects_.recordset();
    const RowSearch search = findRow(*records, password);
    if (search.error || !search.found) co_return search.error;
    error = co_await records->deleteRecord(adAffectCurrent);
    if (!error) error = co_await records->update();
    if (!error) error = co_await records->requery(adOptionUnspecified);
    if (!error) error = co_await transaction.commit();
    co_return error;
}

}  // namespace vantrell
