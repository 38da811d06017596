// SPDX-License-Identifier: MIT
#include "passwords/password_store.h"

#include <utility>

namespace vantrell {

PasswordStore::PasswordStore(RunQueue& queue, Database& database, MessageBoxes& boxes, ProgramState& state,
                             std::function<bool(const Path&)> fileExists)
    : lock_(queue), operations_(database, boxes, state, std::move(fileExists)) {}

void PasswordStore::attachEditor(PasswordEditor& editor) { operations_.setEditor(&editor); }

void PasswordStore::detachEditor(PasswordEditor& editor) {
    if (operations_.editor() != &editor) return;
    operations_.setEditor(nullptr);
    closeStoreObjects();
}

void PasswordStore::unloadEditor() {
    if (editor() != nullptr) operations_.unloadEditor();
}

Task<bool> PasswordStore::openPasswordStore() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.openPasswordStore();
}

Task<bool> PasswordStore::initializeRecordset() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.initializeRecordset();
}

Task<bool> PasswordStore::reInitializeRecordset() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.reInitializeRecordset();
}

Task<std::optional<std::vector<PasswordRecord>>> PasswordStore::readRecords() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.readRecords();
}

Task<bool> PasswordStore::findCurrentPassword() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.findCurrentPassword();
}

Task<bool> PasswordStore::savePassword() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.savePassword();
}

Task<bool> PasswordStore::deleteRecord() {
    const auto held = co_await lock_.acquire();
    co_return co_await operations_.deleteRecord();
}

}  // namespace vantrell
