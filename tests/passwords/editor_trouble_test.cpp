// SPDX-License-Identifier: MIT
#include <array>
#include <optional>

#include "passwords/editor_fixture.h"
#include "support/file_size_limit.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

using Button = void (PasswordEditorController::*)();

/// The file is locked, full or gone.
class EditorTroubleTest : public EditorFixture {
protected:
    void lock() { other.run("BEGIN EXCLUSIVE"); }
    void unlock() { other.run("COMMIT"); }
    /// As long as anybody tries again.
    void waitLong() {
        loop.waitUntil([] { return false; });
    }
    OtherProgram other{file};
};

/// A row is chosen, and then the file cannot be written.
class EditorInTrouble : public EditorTroubleTest, public testing::WithParamInterface<Button> {
protected:
    EditorInTrouble() {
        openWithThree();
        choose(0);
        tick(GetParam() != kDelete);
        before = readFile(file);
    }
    void expectAllAsItWasAndThatItWorksAgain() {
        EXPECT_EQ(theBox().title, "Vantrell");
        EXPECT_EQ(readFile(file), before);
        expectTable(kThree);
        EXPECT_EQ(window.text, "one");
        EXPECT_TRUE(window.isOpen);
        EXPECT_EQ(activePassword.known(), "");
        press(GetParam());
        EXPECT_NE(stored(), kThree);
        EXPECT_EQ(window.text, "");
    }
    std::string before;
};

TEST_P(EditorInTrouble, LockedFileIsReportedAndNothingChanges) {
    lock();
    press(GetParam());
    EXPECT_TRUE(boxes.informed.empty());
    waitLong();
    unlock();
    expectAllAsItWasAndThatItWorksAgain();
}

TEST_P(EditorInTrouble, FullDiskIsReportedAndNothingChanges) {
    std::optional<FileSizeLimit> full(1);
    press(GetParam());
    full.reset();
    expectAllAsItWasAndThatItWorksAgain();
}

TEST_P(EditorInTrouble, ExitDuringTheWaitClosesOnlyAfterSuccess) {
    lock();
    for (const bool isLocked : {true, false}) {
        press(GetParam());
        press(kExit);
        if (!isLocked) unlock();
        waitLong();
        EXPECT_EQ(window.isOpen, isLocked) << "what was entered must not get lost";
    }
    EXPECT_NE(stored(), kThree);
}

std::string buttonName(const testing::TestParamInfo<Button>& test) {
    return std::array{"Add", "Edit", "Delete"}.at(test.index);
}

INSTANTIATE_TEST_SUITE_P(, EditorInTrouble,
                         testing::Values(&PasswordEditorController::addPressed, &PasswordEditorController::editPressed,
                                         &PasswordEditorController::deletePressed),
                         buttonName);

}  // namespace
}  // namespace vantrell::test
