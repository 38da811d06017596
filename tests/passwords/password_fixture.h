// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rig/sqlite_file.h"
#include "support/pass_bench.h"

namespace vantrell::test {

using Strings = std::vector<std::string>;

/// The store and its editor on a real file in a data folder of its own.
class PasswordFixture : public testing::Test {
protected:
    PasswordFixture() {
        activePassword.set({});
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

    PassBench bench;
    const std::string& file = bench.passwordFile;
    HandCrankedLoop& loop = bench.loop;
    ScriptedBoxes& boxes = bench.boxes;
    FakePasswordWindow& window = bench.passwordWindow;
    PasswordStore& store = bench.engine.passwords;
    PasswordEditorController& controller = bench.engine.passwordEditor;
    ActivePassword& activePassword = bench.engine.activePassword;
};

}  // namespace vantrell::test
