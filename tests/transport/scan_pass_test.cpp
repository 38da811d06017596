// SPDX-License-Identifier: MIT
#include "transport/scan_pass.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "platform/linux/linux_fd.h"
#include "rig/sqlite_file.h"
#include "support/forwarding_toolbox.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using Texts = std::vector<std::string>;

class ScanPassTest : public ::testing::Test {
protected:
    Texts beginning() const {
        return {"ZEP Is Running at " + bench.time(), "Please Wait ZEP is searching for files!",
                "Please Wait Encrypting files."};
    }
    std::string paused() const { return "ZEP Is PAUSED at " + bench.time(); }
    /// The lines of a pass to its pause, with the given ones between beginning and end.
    Texts wholePass(const Texts& between) const {
        Texts all = beginning();
        all.insert(all.end(), between.begin(), between.end());
        all.push_back(paused());
        return all;
    }
    bool endsPass() {
        return bench.loop.turnUntil([this] { return group.isIdle(); });
    }
    /// Starts a pass that asks about the first of two files.
    void startWithQuestion() {
        writeFile(bench.in("a"), "a");
        writeFile(bench.in("b"), "b");
        writeFile(bench.out("a.enc"), "old");
        group.start(bench.pass.timRun_Timer());
        ASSERT_FALSE(endsPass());
        EXPECT_TRUE(bench.state.PassInProgress);
        (void)bench.messages();
    }
    void expectBothFilesInSource() {
        EXPECT_TRUE(bench.boxes.openIds.empty());
        EXPECT_EQ(bench.names(bench.state.settings.SourceFolder), (Texts{"a", "b"}));
        EXPECT_TRUE(bench.names(bench.state.settings.RejectFolder).empty());
    }
    PassBench bench;
    TaskGroup group{bench.loop.queue()};
};

TEST_F(ScanPassTest, CarriesFilesAndSaysSoLineByLine) {
    writeFile(bench.in("b.pdf"), "bbb");
    writeFile(bench.in("a.txt"), "aaa");
    ASSERT_TRUE(bench.runPass());
    const Texts expected = wholePass({"Encryped:  a.txt - Sucessful: ", "Encryped:  b.pdf - Sucessful: "});
    EXPECT_EQ(bench.messages(), expected);
    EXPECT_EQ(bench.names(bench.state.settings.DestinationFolder), (Texts{"a.txt.enc", "b.pdf.enc"}));
    EXPECT_EQ(readFile(bench.done("a.txt")), "aaa");
    EXPECT_TRUE(bench.names(bench.state.settings.SourceFolder).empty());
    EXPECT_EQ(bench.window.processed, 2);
    EXPECT_EQ(bench.window.totalFiles, 2U);
    EXPECT_EQ(bench.window.caption, paused());
    EXPECT_TRUE(bench.timRun.isEnabled());
    EXPECT_FALSE(bench.window.waitPointer);
    std::string saved;
    for (const std::string& text : expected) saved += generalDateText(bench.clock.time) + " " + text + "\r\n";
    EXPECT_EQ(readFile(bench.engine.log.LogFilePath()), saved);
}

// A failure (here a folder stands where the output should), while the name is taken in the rejected folder.
TEST_F(ScanPassTest, RejectsUnderADatedNameWhenTheNameIsTaken) {
    writeFile(bench.in("a.txt"), "new");
    writeFile(bench.rejected("a.txt"), "old");
    std::filesystem::create_directory(bench.out("a.txt.enc"));
    ASSERT_TRUE(bench.runPass());
    const Texts said = bench.messages();
    const std::string stamped = "20361116 140000_a.txt";
    const std::string path = bench.in("a.txt");
    ASSERT_EQ(said.size(), 7U);
    EXPECT_EQ(said[3].rfind("Encrypting:  a.txt - FAILED: ", 0), 0U);
    EXPECT_GT(said[3].size(), std::string("Encrypting:  a.txt - FAILED: ").size());
    EXPECT_EQ(Texts(said.begin() + 4, said.end()), (Texts{"File " + path + " File exists rename file to " + stamped,
                                                          "File " + path + " did not encrypt!", paused()}));
    EXPECT_EQ(readFile(bench.rejected("a.txt")), "old");
    EXPECT_EQ(readFile(bench.rejected(stamped)), "new");
    EXPECT_FALSE(bench.exists(path));
}

TEST_F(ScanPassTest, AsksBeforeItReplacesAndObeys) {
    writeFile(bench.in("a.txt"), "new");
    writeFile(bench.out("a.txt.enc"), "old");
    writeFile(bench.done("a.txt"), "old");
    bench.boxes.answerNext(Answer::yes);
    bench.boxes.answerNext(Answer::no);
    ASSERT_TRUE(bench.runPass());
    ASSERT_EQ(bench.boxes.asked.size(), 2U);
    EXPECT_EQ(bench.boxes.asked[0].title, "Overwrite Files");
    EXPECT_TRUE(bench.boxes.asked[0].defaultIsNo);
    EXPECT_EQ(bench.boxes.asked[0].text,
              " Encrypting file \r\n" + bench.in("a.txt") + " already exists in the folder " +
                  bench.state.settings.DestinationFolder +
                  ".\r\n\r\nDo you want to overwrite this file?\r\nIf No Files will be moved to the folder " +
                  bench.state.settings.RejectFolder + " !");
    const Texts said = bench.messages();
    EXPECT_EQ(said[3], " Encrypting file " + bench.in("a.txt") + " already exists in the folder!.");
    EXPECT_EQ(said[4], "Encrypting:  a.txt - FAILED: ");
    EXPECT_EQ(said[5], "Encryped:  a.txt - Sucessful: ");
    EXPECT_EQ(said[6], " Moving orginal file " + bench.done("a.txt") + " already exists in the folder!.");
    EXPECT_NE(readFile(bench.out("a.txt.enc")), "old");
    EXPECT_EQ(readFile(bench.done("a.txt")), "old");
    EXPECT_EQ(readFile(bench.rejected("a.txt")), "new");
}

TEST_F(ScanPassTest, ReplacesWithoutAskingButNeverWhatThisPassCarried) {
    bench.state.settings.OverwriteExistingFiles = true;
    bench.state.settings.IncludeSubfolders = true;
    writeFile(bench.out("same.txt.enc"), "old");
    writeFile(bench.done("same.txt"), "old");
    for (const char* folder : {"x", "y"}) {
        std::filesystem::create_directory(bench.in(folder));
        writeFile(bench.in(std::string(folder) + "/same.txt"), folder);
    }
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.done("same.txt")), "x");
    EXPECT_EQ(readFile(bench.out("same.txt.enc")).size(), 16U);
    EXPECT_EQ(readFile(bench.rejected("same.txt")), "y");
    EXPECT_TRUE(bench.boxes.asked.empty());
}

TEST_F(ScanPassTest, LeavesAFileInUseAloneAndSaysSoOnce) {
    writeFile(bench.in("busy"), "half");
    writeFile(bench.in("free"), "whole");
    {
        const LinuxFd writer(::open(bench.in("busy").c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_TRUE(bench.runPass());
        const Texts said = bench.messages();
        ASSERT_EQ(said.size(), 7U);
        EXPECT_EQ(said[3].rfind("Encrypting:  busy - FAILED: ", 0), 0U);
        EXPECT_EQ(said[4], "File " + bench.in("busy") + " did not encrypt!");
        ASSERT_TRUE(bench.runPass());
        EXPECT_EQ(bench.messages(), wholePass({}));
        EXPECT_TRUE(bench.exists(bench.in("busy")));
    }
    EXPECT_EQ(bench.window.processed, 1);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.done("busy")), "half");
}

TEST_F(ScanPassTest, ReportsFoldersThatAreMissing) {
    const std::string gone = bench.state.settings.DoneFolder;
    std::filesystem::remove(gone);
    writeFile(bench.in("a.txt"), "a");
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages(), (Texts{"ZEP Is Running at " + bench.time(), "Please Wait ZEP is searching for files!",
                                       "Done Folder " + gone + " does not exist bypassing " +
                                           bench.state.settings.SourceFolder + " events!",
                                       "Source, Destination or Done Folders are missing"}));
    EXPECT_EQ(bench.window.caption, "Problem.... ");
    EXPECT_FALSE(bench.timRun.isEnabled());
    bench.state.settings.DoneFolder = bench.state.settings.SourceFolder;
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages()[2],
              "Done Folder " + bench.state.settings.SourceFolder + " is the Source Folder bypassing events!");
    EXPECT_EQ(readFile(bench.in("a.txt")), "a");
}

TEST_F(ScanPassTest, LeavesASourceAloneThatAnotherProgramIsProcessing) {
    HandDrivenTimer& modeTimer = bench.timers["tmchkTimer"];
    modeTimer.setEnabled(true);
    writeFile(bench.in("a"), "a");
    bench.claim.outcome = SourceClaim::Outcome::anothers;
    ASSERT_TRUE(bench.runPass());
    const Texts said = bench.messages();
    ASSERT_EQ(said.size(), 4U);
    EXPECT_TRUE(said[2].starts_with("Source Folder " + bench.state.settings.SourceFolder + " is being processed by"));
    EXPECT_EQ(bench.notifier.shown.back(), "Vantrell: " + said[2]);
    EXPECT_EQ(said[3], paused());
    EXPECT_TRUE(bench.timRun.isEnabled()) << "the next tick tries again";
    EXPECT_TRUE(bench.exists(bench.in("a")));

    bench.claim.outcome = SourceClaim::Outcome::held;
    ASSERT_TRUE(bench.runPass());
    EXPECT_TRUE(bench.exists(bench.done("a")));
    ASSERT_TRUE(modeTimer.tickNow());
    EXPECT_EQ(bench.claim.claimed, bench.state.settings.SourceFolder) << "between two passes too";
    bench.engine.controller.stopPressed();
    ASSERT_TRUE(modeTimer.tickNow());
    EXPECT_EQ(bench.claim.claimed, "");
    ASSERT_TRUE(bench.runPass());
    std::filesystem::remove_all(bench.state.settings.DoneFolder);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.claim.claimed, "") << "nothing can be done with it";
}

TEST_F(ScanPassTest, RejectsNothingWhenAFolderVanishesDuringThePass) {
    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    std::filesystem::remove_all(bench.state.settings.DestinationFolder);
    bench.boxes.answerOpen(Answer::yes);
    ASSERT_TRUE(endsPass());
    EXPECT_EQ(bench.messages().back(), "Source, Destination or Done Folders are missing");
    expectBothFilesInSource();
    EXPECT_FALSE(bench.timRun.isEnabled());
}

TEST_F(ScanPassTest, StopWithdrawsTheQuestionAndLeavesTheFile) {
    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    bench.pass.requestStop();
    ASSERT_TRUE(endsPass());
    expectBothFilesInSource();
    EXPECT_EQ(bench.messages(), (Texts{"User has Stopped Process!D", "User Stopped Encrypting Files"}));
    EXPECT_EQ(readFile(bench.out("a.enc")), "old");
    EXPECT_FALSE(bench.timRun.isEnabled());
    EXPECT_EQ(bench.window.caption, "Done Encrpting Files");
}

TEST_F(ScanPassTest, StopHoldsAndTheScheduleWindowAndThePassWaitForEachOther) {
    WeeklyDeleteDialog& window = bench.engine.weeklyDialog;
    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    window.cmdSched();
    bench.boxes.answerOpen(Answer::yes);
    ASSERT_TRUE(endsPass());
    EXPECT_FALSE(bench.timRun.isEnabled()) << "no pass begins while the window is open";
    window.cancelPressed();
    EXPECT_TRUE(bench.timRun.isEnabled());

    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    window.cmdSched();
    window.cancelPressed();
    EXPECT_EQ(bench.engine.mode.mode(), Mode::running) << "the pass decides";
    bench.timRun.setEnabled(true);  // whoever does so
    bench.engine.controller.stopPressed();
    ASSERT_TRUE(endsPass());
    EXPECT_EQ(bench.engine.mode.mode(), Mode::stopped);
}

TEST_F(ScanPassTest, AnExceptionEndsThePassAndNotTheProgram) {
    ScanPass pass(bench.partsOn(bench.toolbox), []() -> std::unique_ptr<CryptoComponent> { throw std::bad_alloc(); });
    Passes passes(pass, bench.loop.queue());
    writeFile(bench.in("a"), "a");
    bench.timRun.setEnabled(true);
    passes.timRun_Timer();
    bench.settle();
    EXPECT_EQ(bench.boxes.informed.back().text, "7  Out of memory");
    EXPECT_EQ(bench.messages().back(), "7  Out of memory");
    EXPECT_EQ(bench.engine.mode.mode(), Mode::stopped);
    EXPECT_EQ(bench.window.caption, "Problem.... ");
    EXPECT_FALSE(bench.window.waitPointer);
    EXPECT_TRUE(bench.exists(bench.in("a")));
    ASSERT_TRUE(bench.runPass());
    EXPECT_TRUE(bench.exists(bench.done("a")));
}

TEST_F(ScanPassTest, AbortAtAQuestionSaysNothingFurther) {
    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    group.abort();
    expectBothFilesInSource();
    EXPECT_TRUE(bench.messages().empty());
    EXPECT_EQ(readFile(bench.out("a.enc")), "old");
}

TEST_F(ScanPassTest, ASinglePassLeavesTheTimerOff) {
    writeFile(bench.in("a"), "a");
    writeFile(bench.out("a.enc"), "old");
    writeFile(bench.in("b"), "b");
    bench.timRun.setEnabled(true);
    bench.boxes.answerNext(Answer::no);
    bench.pass.takeStart(true);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.names(bench.state.settings.SourceFolder), Texts{"b"}) << "a failed file ends it";
    EXPECT_FALSE(bench.timRun.isEnabled());
    EXPECT_EQ(bench.engine.mode.mode(), Mode::stopped);
    EXPECT_EQ(bench.messages().back(), paused());
}

TEST_F(ScanPassTest, DoesNotBeginWithAFolderThatWasEmptiedDuringTheLookup) {
    bench.engine.activePassword.set({});
    OtherProgram(bench.passwordFile).run("INSERT INTO EncDecPasswords VALUES ('found', 1)");
    OtherProgram other(bench.passwordFile);
    other.run("BEGIN EXCLUSIVE");
    group.start(bench.pass.timRun_Timer());
    ASSERT_FALSE(endsPass());
    bench.state.settings.RejectFolder.clear();
    other.run("COMMIT");
    bench.loop.waitUntil([this] { return group.isIdle(); });
    EXPECT_EQ(bench.window.label2, "One or all of the folder parameters are missing. Please check below.");
    EXPECT_TRUE(bench.messages().empty());
}

TEST_F(ScanPassTest, WaitsForALookupThatSomebodyElseHasBegun) {
    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    OtherProgram other(bench.passwordFile);
    other.run("INSERT INTO EncDecPasswords VALUES ('secret', 1); BEGIN EXCLUSIVE");
    bench.engine.currentPassword.viewCurrentPasswordChosen();
    bench.settle();
    bench.engine.fields.includeSubfoldersClicked(true);
    EXPECT_TRUE(bench.state.settings.IncludeSubfolders) << "what is clicked meanwhile counts";
    bench.boxes.answerOpen(Answer::no);
    ASSERT_FALSE(endsPass());
    other.run("COMMIT");
    bench.loop.waitUntil([this] { return group.isIdle(); });
    ASSERT_TRUE(endsPass());
    EXPECT_EQ(bench.boxes.informed.back().text, "secret");
    EXPECT_EQ(readFile(bench.done("b")), "b");
}

TEST_F(ScanPassTest, StopsWithoutAPassword) {
    writeFile(bench.in("a"), "a");
    bench.engine.activePassword.set({});
    bench.timRun.setEnabled(true);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages(), Texts{"There is no active password.  Encryption has stopped.."});
    ASSERT_EQ(bench.boxes.informed.size(), 1U);
    EXPECT_EQ(bench.boxes.informed[0].text, "There is no active password.  Encryption has stopped.");
    EXPECT_FALSE(bench.timRun.isEnabled());
    OtherProgram(bench.passwordFile).run("INSERT INTO EncDecPasswords VALUES ('found', 1)");
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.window.processed, 1);
}

TEST_F(ScanPassTest, SearchesNoLongerWhenThePasswordHasGoneMeanwhile) {
    ASSERT_NO_FATAL_FAILURE(startWithQuestion());
    bench.engine.activePassword.set({});
    bench.boxes.answerOpen(Answer::no);
    ASSERT_TRUE(endsPass());
    EXPECT_EQ(bench.window.caption, "Problem.... ");
    EXPECT_EQ(bench.engine.mode.mode(), Mode::stopped);
    EXPECT_TRUE(bench.exists(bench.in("b")));
}

/// A toolbox that cannot read one of the folders.
class UnreadFolder final : public ForwardingToolbox {
public:
    using ForwardingToolbox::ForwardingToolbox;
    Task<std::vector<Path>> search(SearchOrder order) override {
        if (isClosed) order.notRead("/in/closed", {FaultKind::other, "no right"});
        return ForwardingToolbox::search(std::move(order));
    }
    bool isClosed = true;
};

TEST_F(ScanPassTest, SaysOnceWhatItCouldNotReadAndNotThatThereIsNothing) {
    UnreadFolder toolbox(bench.toolbox);
    ScanPass pass(bench.partsOn(toolbox), {});
    const std::string words = "Folder /in/closed - FAILED: no right";
    for (const Texts& said : {Texts{words}, Texts{}}) {
        ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
        EXPECT_EQ(bench.messages(), wholePass(said));
        EXPECT_EQ(bench.notifier.shown, Texts{"Vantrell: " + words});
    }
    toolbox.isClosed = false;
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_EQ(bench.messages(), wholePass({"No Records this pass!"}));
}

}  // namespace
}  // namespace vantrell::test
