// SPDX-License-Identifier: MIT
#include <optional>

#include "passwords/editor_fixture.h"
#include "support/file_size_limit.h"

namespace vantrell::test {
namespace {

using Button = void (PasswordEditorController::*)();

/// A row is chosen, and then the file cannot be written.
class EditorInTrouble : public EditorFixture, public testing::WithParamInterface<Button> {
protected:
    EditorInTrouble() {
        openWithThree();
        choose(0);
        tick(GetParam() != kDelete);
    }
    /// As long as anybody tries again.
    void waitLong() {
        loop.waitUntil([] { return false; });
    }
    OtherProgram other{file};
};

INSTANTIATE_TEST_SUITE_P(, EditorInTrouble,
                         testing::Values(&PasswordEditorController::addPressed, &PasswordEditorController::editPressed,
                                         &PasswordEditorController::deletePressed));

TEST_P(EditorInTrouble, AFileThatIsLockedOrFullStaysAndItIsToldAndWorksAgain) {
    const std::string before = readFile(file);
    for (const bool isFull : {false, true}) {
        std::optional<FileSizeLimit> full;
        isFull ? static_cast<void>(full.emplace(1)) : other.run("BEGIN EXCLUSIVE");
        press(GetParam());
        waitLong();
        full.reset();
        if (!isFull) other.run("COMMIT");
        EXPECT_EQ(boxes.informed.size(), isFull ? 2U : 1U);
        EXPECT_EQ(readFile(file), before);
        expectTable(kThree);
        EXPECT_EQ(window.text, "one");
        EXPECT_TRUE(window.isOpen);
        EXPECT_EQ(activePassword.known(), "");
    }
    press(GetParam());
    EXPECT_NE(stored(), kThree);
    EXPECT_EQ(window.text, "");
}

TEST_P(EditorInTrouble, ExitDuringTheWaitClosesOnlyAfterSuccess) {
    other.run("BEGIN EXCLUSIVE");
    for (const bool isLocked : {true, false}) {
        press(GetParam());
        press(kExit);
        if (!isLocked) other.run("COMMIT");
        waitLong();
        EXPECT_EQ(window.isOpen, isLocked) << "what was entered must not get lost";
    }
    EXPECT_NE(stored(), kThree);
}

}  // namespace
}  // namespace vantrell::test
