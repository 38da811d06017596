// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/active_password.h"
#include "passwords/password_editor_controller.h"
#include "passwords/password_store.h"
#include "passwords/supplied_password_file.h"
#include "platform/sqlite/sqlite_database.h"
#include "rig/hand_cranked_loop.h"
#include "rig/sqlite_file.h"
#include "rig/temporary_folder.h"
#include "support/doubles.h"
#include "support/scripted_boxes.h"

namespace vantrell::test {

using Strings = std::vector<std::string>;

/// The store and its editor on a real file in a data folder of its own.
class PasswordFixture : public testing::Test {
protected:
    PasswordFixture() {
        writeFile(file, std::string(suppliedPasswordFile()));
        store.attachEditor(controller);
    }

    /// Replaces the file by one that the statements make.
    void makeFile(const std::string& sql) {
        std::filesystem::remove(file);
        OtherProgram(file).run(sql);
    }
    void fill(const std::string& sql) { OtherProgram(file).run(sql); }
    Strings stored() { return OtherProgram(file).column("SELECT Password || '=' || Active FROM EncDecPasswords"); }

    bool save(const std::string& password, bool active) {
        window.text = password;
        window.active = active;
        return loop.valueOf(store.savePassword());
    }
    bool erase(const std::string& password) {
        window.text = password;
        return loop.valueOf(store.deleteRecord());
    }
    /// The active password after the search for it in the table.
    std::string current() { return loop.valueOf(store.findCurrentPassword()).value_or("none was read"); }
    Task<void> lookUpOnce() { static_cast<void>(co_await activePassword.lookUp()); }
    std::string lookUp() { return loop.valueOf(activePassword.lookUp()); }
    /// The one box that was shown.
    Box theBox() {
        EXPECT_EQ(boxes.informed.size(), 1u);
        return boxes.informed.empty() ? Box{} : boxes.informed.front();
    }
    void expectErrorBox(std::int32_t number, const std::string& words) {
        const Box box = theBox();
        EXPECT_EQ(box.title, "Vantrell");
        EXPECT_EQ(box.text.find(std::to_string(number) + "  "), 0u) << box.text;
        EXPECT_NE(box.text.find(words), std::string::npos) << box.text;
    }

    TemporaryFolder folder;
    const std::string file = folder / "EDPasswords.mdb";
    HandCrankedLoop loop;
    ScriptedBoxes boxes{loop.queue()};
    SqliteDatabase database{loop};
    PasswordStore store{loop.queue(), database, boxes, file,
                        [](const Path& path) { return std::filesystem::is_regular_file(path); }};
    ActivePassword activePassword{loop.queue(), [this] { return store.lookUpActivePassword(); }};
    FakePasswordWindow window;
    PasswordEditorController controller{store, activePassword, window, boxes, loop.queue()};
};

}  // namespace vantrell::test
