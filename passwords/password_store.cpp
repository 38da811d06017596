// SPDX-License-Identifier: MIT
#include "passwords/password_store.h"

#include <utility>

namespace vantrell {

PasswordStore::PasswordStore(RunQueue& queue, Database& database, MessageBoxes& boxes, Path file,
                             std::function<bool(const Path&)> fileExists)
    : lock_(queue), operations_(database, boxes, std::move(file), std::move(fileExists)) {}

void PasswordStore::attachEditor(PasswordEditor& editor) { operations_.setEditor(&editor); }

void PasswordStore::detachEditor(PasswordEditor& editor) {
    if (operations_.editor() != &editor) return;
    operations_.setEditor(nullptr);
    if (!isBusy()) closeStoreObjects();
}

void PasswordStore::unloadEditor() {
    if (editor() != nullptr) operations_.unloadEditor();
}

namespace {

/// Nobody but a loaded editor keeps the file open; a lookup that is aborted does not either.
class FileReleased {
public:
    explicit FileReleased(PasswordStore& store) : store_(store) {}
    FileReleased(const FileReleased&) = delete;
    FileReleased& operator=(const FileReleased&) = delete;
    ~FileReleased() {
        if (store_.editor() == nullptr) store_.closeStoreObjects();
    }

private:
    PasswordStore& store_;
};

}  // namespace

// One operation at a time: the next begins when the one before it is through.
template <class Value>
Task<Value> PasswordStore::alone(Task<Value> (PasswordOperations::*operation)()) {
    const auto held = co_await lock_.acquire();
    co_return co_await (operations_.*operation)();
}

Task<bool> PasswordStore::openPasswordStore() { return alone(&PasswordOperations::openPasswordStore); }
Task<bool> PasswordStore::initializeRecordset() { return alone(&PasswordOperations::initializeRecordset); }
Task<bool> PasswordStore::reInitializeRecordset() { return alone(&PasswordOperations::reInitializeRecordset); }
Task<std::optional<std::vector<PasswordRecord>>> PasswordStore::readRecords() {
    return alone(&PasswordOperations::readRecords);
}
Task<std::optional<std::string>> PasswordStore::findCurrentPassword() {
    return alone(&PasswordOperations::findCurrentPassword);
}

Task<std::optional<std::string>> PasswordStore::lookUpActivePassword() {
    const auto held = co_await lock_.acquire();
    const FileReleased atTheEnd(*this);
    const auto found = co_await operations_.lookUpActivePassword();
    if (editor() != nullptr && !editor()->isInUse()) unloadEditor();
    co_return found;
}

Task<bool> PasswordStore::savePassword() { return alone(&PasswordOperations::savePassword); }
Task<bool> PasswordStore::deleteRecord() { return alone(&PasswordOperations::deleteRecord); }

}  // namespace vantrell
