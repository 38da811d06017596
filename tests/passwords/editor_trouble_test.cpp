// SPDX-License-Identifier: MIT
#include <sys/resource.h>

#include <csignal>
#include <optional>

#include "passwords/editor_fixture.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

/// No file may be written beyond its first byte, as on a disk that is full.
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
    void pressIt() { press(GetParam().press); }
    void expectAllAsItWasAndThatItWorksAgain() {
        EXPECT_EQ(theBox().title, "Product");
        EXPECT_EQ(readFile(file), before);
        EXPECT_EQ(window.rows, kThreeListed);
        EXPECT_EQ(window.text, "one");
        EXPECT_TRUE(window.isOpen);
        EXPECT_EQ(state.ActivePassword, "");
        pressIt();
        EXPECT_NE(stored(), kThree);
        EXPECT_EQ(window.text, "");
    }

    std::string before;
};

TEST_P(EditorInTrouble, LockedFileIsReportedAndNothingChanges) {
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    pressIt();
    EXPECT_TRUE(boxes.informed.empty());
    waitLong();
    other.run("COMMIT");
    expectAllAsItWasAndThatItWorksAgain();
}

TEST_P(EditorInTrouble, FullDiskIsReportedAndNothingChanges) {
    std::optional<NoRoom> full(std::in_place);
    pressIt();
    full.reset();
    expectAllAsItWasAndThatItWorksAgain();
}

TEST_P(EditorInTrouble, ReadOnlyFileIsReportedAndNothingChanges) {
    using std::filesystem::perms;
    std::filesystem::permissions(folder.path(), perms::all);
    std::filesystem::permissions(file, perms::owner_read | perms::others_read);
    std::optional<OrdinaryUser> user(std::in_place);
    pressIt();
    user.reset();
    std::filesystem::permissions(file, perms::owner_read | perms::owner_write);
    expectAllAsItWasAndThatItWorksAgain();
}

TEST_P(EditorInTrouble, MissingFileIsReportedAndNotMade) {
    std::filesystem::remove(file);
    pressIt();
    EXPECT_FALSE(std::filesystem::exists(file));
    // Deleting opens the store anew, which closes the editor of a missing file.
    const bool isOpenedAnew = GetParam().press == kDelete;
    EXPECT_EQ(theBox().text == "Missing Data Base", isOpenedAnew);
    EXPECT_EQ(window.isOpen, !isOpenedAnew);
    EXPECT_EQ(window.text, "one");
}

TEST_P(EditorInTrouble, ExitDuringTheWaitClosesOnlyAfterSuccess) {
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    pressIt();
    press(kExit);
    waitLong();
    EXPECT_TRUE(window.isOpen) << "what was entered is not saved";
    pressIt();
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

TEST_F(EditorTroubleTest, CloseBoxDuringASearchClosesWithoutABox) {
    openWithThree();
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    for (const char* text : {"l", "la"}) type(text);  // the second search replaces the first
    press(kCloseBox);
    waitLong();
    EXPECT_FALSE(window.isOpen);
    EXPECT_TRUE(boxes.informed.empty());
}

}  // namespace
}  // namespace vantrell::test
