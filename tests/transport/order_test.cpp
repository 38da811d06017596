// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using Notes = std::vector<std::string>;

class OrderTest : public testing::Test {
protected:
    /// The notes about what lies in the folder of the profile, or about all other folders.
    static Notes about(bool profile, const Notes& notes) {
        Notes some;
        for (const std::string& note : notes)
            if ((note.find(" app") != std::string::npos) == profile) some.push_back(note);
        return some;
    }
    PassBench bench;
};

TEST_F(OrderTest, AFileIsSafeBeforeItIsSeenAndLoggedBeforeItIsMoved) {
    writeFile(bench.in("first"), "x");
    ASSERT_TRUE(bench.runPass());  // finds out what this file system can do, and makes the day's file
    bench.kernel.taken();
    writeFile(bench.in("a"), "contents");
    ASSERT_TRUE(bench.runPass());
    const Notes notes = bench.kernel.taken();
    EXPECT_EQ(about(false, notes), (Notes{"write out/*", "flush out/*", "name out/a.enc", "flush out",
                                          "move in/a > done/a", "flush done", "flush in"}));
    const auto at = [&notes](const std::string& note) { return std::find(notes.begin(), notes.end(), note); };
    const std::string logged = "write app/Daily Activity Logs/20261116 Activity.Log";
    EXPECT_LT(std::find(at("flush out"), notes.end(), logged), at("move in/a > done/a"));
}

TEST_F(OrderTest, TheSettingsAreSafeBeforeTheyTakeTheirName) {
    ASSERT_TRUE(bench.files.writeAtomically(bench.state.SettingsFilePath, "old").ok());
    bench.kernel.taken();
    bench.settings.saveSettings();
    EXPECT_EQ(bench.kernel.taken(), (Notes{"write app/*", "flush app/*", "move app/* > app/ZEP.cfg", "flush app"}));
}

}  // namespace
}  // namespace vantrell::test
