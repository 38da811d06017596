// SPDX-License-Identifier: MIT
#include <sys/resource.h>

#include <csignal>

#include "passwords/editor_fixture.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

/// No file of this process may grow or be written beyond its first byte, as on a disk that is full.
class NoRoom {
public:
    NoRoom() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit none{1, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    NoRoom(const NoRoom&) = delete;
    NoRoom& operator=(const NoRoom&) = delete;
    ~NoRoom() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

struct Button {
    const char* name;
    void (PasswordEditorController::*press)();
};

/// A row is chosen, and then the file cannot be written.
class EditorInTrouble : public EditorFixture, public testing::WithParamInterface<Button> {
protected:
    EditorInTrouble() {
        openWithThree();
        choose(0);
        tick(GetParam().press != kDelete);
        before = readFile(file);
    }
    void expectAllAsItWas() {
        EXPECT_EQ(theBox().title, "Product");
        EXPECT_EQ(readFile(file), before);
        EXPECT_EQ(stored(), kThree);
        EXPECT_EQ(window.rows, kThreeListed);
        EXPECT_EQ(window.text, "one");
        EXPECT_TRUE(window.isOpen);
        EXPECT_EQ(state.ActivePassword, "");
    }
    void expectThatItWorksAgain() {
        press(GetParam().press);
        EXPECT_NE(stored(), kThree);
        EXPECT_EQ(window.text, "");
    }

    std::string before;
};

TEST_P(EditorInTrouble, LockedFileIsReportedAndNothingChanges) {
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    press(GetParam().press);
    EXPECT_TRUE(boxes.informed.empty());
    waitLong();
    other.run("COMMIT");
    expectAllAsItWas();
    expectThatItWorksAgain();
}

TEST_P(EditorInTrouble, FullDiskIsReportedAndNothingChanges) {
    {
        const NoRoom full;
        press(GetParam().press);
    }
    expectAllAsItWas();
    expectThatItWorksAgain();
}

TEST_P(EditorInTrouble, ReadOnlyFileIsReportedAndNothingChanges) {
    namespace fs = std::filesystem;
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(file, fs::perms::owner_read | fs::perms::others_read);
    {
        const OrdinaryUser user;
        press(GetParam().press);
    }
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    expectAllAsItWas();
    expectThatItWorksAgain();
}

TEST_P(EditorInTrouble, MissingFileIsReportedAndNotMade) {
    std::filesystem::remove(file);
    press(GetParam().press);
    ASSERT_EQ(boxes.informed.size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(file));
    // Deleting opens the store anew, which closes the editor of a missing file.
    EXPECT_EQ(window.isOpen, GetParam().press != kDelete);
    EXPECT_EQ(boxes.informed[0].text == "Missing Data Base", GetParam().press == kDelete);
    if (window.isOpen) EXPECT_EQ(window.text, "one");
}

TEST_P(EditorInTrouble, ExitDuringTheWaitClosesOnlyAfterSuccess) {
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    press(GetParam().press);
    press(kExit);
    EXPECT_TRUE(window.isOpen);
    waitLong();
    EXPECT_TRUE(window.isOpen) << "what was typed is not saved";
    press(GetParam().press);
    press(kExit);
    other.run("COMMIT");
    waitLong();
    EXPECT_FALSE(window.isOpen);
    EXPECT_NE(stored(), kThree);
}

INSTANTIATE_TEST_SUITE_P(, EditorInTrouble,
                         testing::Values(Button{"Add", &PasswordEditorController::addPressed},
                                         Button{"Edit", &PasswordEditorController::editPressed},
                                         Button{"Delete", &PasswordEditorController::deletePressed}),
                         [](const auto& test) { return std::string(test.param.name); });

using EditorTroubleTest = EditorFixture;

TEST_F(EditorTroubleTest, MissingFileClosesTheWindow) {
    std::filesystem::remove(file);
    open();
    EXPECT_EQ(theBox().text, "Missing Data Base");
    EXPECT_FALSE(window.isOpen);
    EXPECT_FALSE(controller.isLoaded());
}

TEST_F(EditorTroubleTest, ListIsFilledOnceALockedFileIsFree) {
    OtherProgram other(file);
    other.run("INSERT INTO EncDecPasswords VALUES ('one', 1); BEGIN EXCLUSIVE");
    open();
    waitLong();
    EXPECT_TRUE(window.isOpen);
    EXPECT_TRUE(window.rows.empty());
    other.run("COMMIT");
    type("one");
    EXPECT_EQ(window.rows, Strings{"one=True"});
    EXPECT_EQ(window.shown, kStoredPassword);
}

TEST_F(EditorTroubleTest, DeleteRightAfterAClickKnowsThatThePasswordIsActive) {
    openWithThree();
    choose(0);
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    choose(1);
    press(kDelete);
    other.run("COMMIT");
    waitLong();
    EXPECT_EQ(boxes.asked.size(), 1u);
    EXPECT_EQ(stored(), kThree);
}

TEST_F(EditorTroubleTest, ClickOnTheActiveBoxIsNotLostInASearch) {
    openWithThree();
    window.text = "new";  // key, box and button before the table is read
    controller.passwordEdited();
    tick(true);
    press(kAdd);
    EXPECT_EQ(stored(), (Strings{"one=0", "Two=0", "last=0", "new=1"}));
}

TEST_F(EditorTroubleTest, EachKeyReplacesTheSearchBeforeIt) {
    openWithThree();
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    for (const char* text : {"l", "la", "las", "last"}) type(text);
    other.run("COMMIT");
    waitLong();
    EXPECT_EQ(window.shown, kStoredPassword);
    EXPECT_TRUE(boxes.informed.empty());
}

TEST_F(EditorTroubleTest, CloseBoxDuringASearchClosesWithoutABox) {
    openWithThree();
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    type("x");
    press(kCloseBox);
    waitLong();
    EXPECT_FALSE(window.isOpen);
    EXPECT_TRUE(boxes.informed.empty());
}

}  // namespace
}  // namespace vantrell::test
