// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using Notes = std::vector<std::string>;

class OrderTest : public testing::Test {
protected:
    /// What the kernel did since the last call; the data folder is "app".
    Notes taken() {
        Notes notes = bench.kernel.taken();
        const std::string app = bench.state.AppFolder.substr(bench.root.path().size() + 1);
        for (std::string& note : notes)
            for (auto at = note.find(app); at != std::string::npos; at = note.find(app))
                note.replace(at, app.size(), "app");
        return notes;
    }
    /// Without those about the data folder.
    static Notes ofFiles(Notes notes) {
        std::erase_if(notes, [](const std::string& note) { return note.find(" app") != std::string::npos; });
        return notes;
    }
    PassBench bench;
};

TEST_F(OrderTest, AFileIsSafeBeforeItIsSeenAndLoggedBeforeItIsMoved) {
    bench.kernel.mountedAs = "xfs";  // names are ordered there
    writeFile(bench.in("first"), "x");
    ASSERT_TRUE(bench.runPass());  // finds out what this file system can do, and makes the day's file
    taken();
    writeFile(bench.in("a"), "contents");
    ASSERT_TRUE(bench.runPass());
    Notes notes = taken();
    ASSERT_EQ(notes.front(), "name out/*") << "each pass tries out once what the file system can do";
    notes.erase(notes.begin());
    EXPECT_EQ(ofFiles(notes), (Notes{"write out/*", "flush out/*", "name out/a.enc", "flush out", "move in/a > done/a",
                                     "flush done", "flush in"}));
    const auto at = [&notes](const std::string& note) { return std::find(notes.begin(), notes.end(), note); };
    const std::string logged = "write app/Daily Activity Logs/20361116 Activity.Log";
    EXPECT_LT(std::find(at("flush out"), notes.end(), logged), at("move in/a > done/a"));
}

// Where names are not ordered, how many names a file has must reach the disk too.
TEST_F(OrderTest, AnOutputIsFlushedAgainWithItsNameWhereNamesAreNotOrdered) {
    bench.kernel.mountedAs = "ext2";
    writeFile(bench.in("a"), "contents");
    ASSERT_TRUE(bench.runPass());
    Notes notes = ofFiles(taken());
    notes.erase(notes.begin(), std::find(notes.begin(), notes.end(), "write out/*"));
    notes.resize(5);
    EXPECT_EQ(notes, (Notes{"write out/*", "flush out/*", "name out/a.enc", "flush out/*", "flush out"}));
}

TEST_F(OrderTest, TheSettingsAreSafeBeforeTheyTakeTheirName) {
    ASSERT_TRUE(bench.files.writeAtomically(bench.settingsFile, "old").ok());
    taken();
    ASSERT_TRUE(bench.engine.settings.save());
    EXPECT_EQ(taken(), (Notes{"write app/*", "flush app/*", "move app/* > app/ZEP.cfg", "flush app"}));
}

}  // namespace
}  // namespace vantrell::test
