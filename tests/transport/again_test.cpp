// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>

#include "base/display_text.h"
#include "platform/linux/linux_fd.h"
#include "support/forwarding_toolbox.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using Texts = std::vector<std::string>;

ino_t inodeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_ino;
}

// What an earlier pass, or an earlier run of the program, has left half done.
class AgainTest : public testing::Test {
protected:
    /// The state after a crash between the two steps of a file.
    void leaveEncryptedButNotMoved(const std::string& name, const std::string& contents) {
        writeFile(bench.in(name), contents);
        ASSERT_TRUE(bench.runPass());
        std::filesystem::rename(bench.done(name), bench.in(name));
        (void)bench.messages();
    }
    void putNamesakes() {
        bench.state.settings.OverwriteExistingFiles = bench.state.settings.IncludeSubfolders = true;
        for (const char* folder : {"x", "y"}) {
            std::filesystem::create_directory(bench.in(folder));
            writeFile(bench.in(std::string(folder) + "/same"), folder);
        }
    }
    PassBench bench;
};

TEST_F(AgainTest, AnOutputThatStandsWholeIsTakenWithoutAQuestion) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{16}, std::size_t{3} << 20U}) {
        leaveEncryptedButNotMoved("a", std::string(size, 'a'));
        const ino_t standing = inodeOf(bench.out("a.enc"));
        ASSERT_TRUE(bench.runPass());
        EXPECT_EQ(bench.messages()[3], "Encryped:  a - Sucessful: ");
        EXPECT_EQ(inodeOf(bench.out("a.enc")), standing);
        EXPECT_EQ(readFile(bench.done("a")).size(), size);
        std::filesystem::remove(bench.done("a"));
        std::filesystem::remove(bench.out("a.enc"));
    }
    leaveEncryptedButNotMoved("a", "of the same size");
    writeFile(bench.in("a"), "of another mind.");
    bench.boxes.answerNext(Answer::no);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.rejected("a")), "of another mind.") << "what differs is asked about";
}

TEST_F(AgainTest, AfterAFailedFlushNothingThatStandsIsBelieved) {
    leaveEncryptedButNotMoved("a", "contents");
    const ino_t standing = inodeOf(bench.out("a.enc"));
    const std::string before = readFile(bench.out("a.enc"));
    bench.engine.flushNote.write();
    FlushNote ofNextRun(bench.files, bench.state.AppFolder + "/" + kFlushNoteName);
    EXPECT_TRUE(ofNextRun.stands());
    const LinuxFd keepsTheNumber(::open(bench.out("a.enc").c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.out("a.enc")), before);
    EXPECT_NE(inodeOf(bench.out("a.enc")), standing);
    EXPECT_TRUE(bench.exists(bench.done("a")));
    EXPECT_FALSE(bench.engine.flushNote.stands()) << "the pass has carried everything";
    EXPECT_FALSE(FlushNote(bench.files, bench.state.AppFolder + "/" + kFlushNoteName).stands());
}

// Somebody who takes each output as soon as it has its name.
class Collector final : public ForwardingToolbox {
public:
    Collector(FileToolbox& real, PassBench& bench) : ForwardingToolbox(real), bench_(bench) {}
    Task<Result<>> move(MoveOrder order) override {
        taken += std::filesystem::remove(bench_.out(nameOf(order.source) + ".enc")) ? 1 : 0;
        return ForwardingToolbox::move(std::move(order));
    }
    int taken = 0;

private:
    PassBench& bench_;
};

TEST_F(AgainTest, AnOutputThatIsTakenAwayAtOnceWasStillMade) {
    Collector collector(bench.toolbox, bench);
    ScanPass pass(bench.partsOn(collector),
                  [&] { return std::make_unique<CryptoComponent>(bench.loop, collector, makeOpensslCipher); });
    writeFile(bench.in("a"), "a");
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_EQ(collector.taken, 1);
    EXPECT_EQ(readFile(bench.done("a")), "a");
}

// What is wrong with a file when it is opened ahead of its turn does not count.
class Ahead final : public ForwardingToolbox {
public:
    using ForwardingToolbox::ForwardingToolbox;
    Task<Result<>> move(MoveOrder order) override {
        if (nameOf(order.source) == "a") beforeTheNext();
        return ForwardingToolbox::move(std::move(order));
    }
    std::function<void()> beforeTheNext;
};

TEST_F(AgainTest, AFileThatChangesBeforeItsTurnIsCarriedAsItIsThen) {
    Ahead ahead(bench.toolbox);
    ScanPass pass(bench.partsOn(ahead),
                  [&] { return std::make_unique<CryptoComponent>(bench.loop, ahead, makeOpensslCipher); });
    for (const char* name : {"a", "busy", "grown"}) writeFile(bench.in(name), name);
    LinuxFd writer(::open(bench.in("busy").c_str(), O_WRONLY | O_CLOEXEC));
    ahead.beforeTheNext = [&] {
        writer = LinuxFd();
        writeFile(bench.in("grown"), "grown since it was prepared");
    };
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_EQ(readFile(bench.done("busy")), "busy");
    EXPECT_EQ(readFile(bench.done("grown")), "grown since it was prepared");
    EXPECT_EQ(readFile(bench.out("grown.enc")).size(), 32U);
}

TEST_F(AgainTest, ANamesakeIsNoNewerVersionInALaterPassEither) {
    putNamesakes();
    {
        const LinuxFd writer(::open(bench.in("y/same").c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_TRUE(bench.runPass());
    }
    EXPECT_EQ(readFile(bench.done("same")), "x");
    // A start on what a crash has left: nothing is known but what lies in the data folder.
    Namesakes ofNextRun(bench.files, bench.state.AppFolder + "/" + kNamesakesName);
    PassParts parts = bench.partsOn(bench.toolbox);
    ScanPass pass({parts.state, parts.window, parts.report, parts.log, parts.settings, parts.toolbox, parts.boxes,
                   parts.loop, parts.clock, parts.timRun, parts.mode, parts.notices, parts.password, parts.noPassword,
                   parts.flushNote, ofNextRun, parts.mounts},
                  [&] { return std::make_unique<CryptoComponent>(bench.loop, bench.toolbox, makeOpensslCipher); });
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_EQ(readFile(bench.done("same")), "x");
    EXPECT_EQ(readFile(bench.rejected("same")), "y");
    EXPECT_FALSE(bench.exists(bench.state.AppFolder + "/" + kNamesakesName)) << "nothing is left of the name";
    writeFile(bench.in("y/same"), "newer");
    ASSERT_TRUE(bench.loop.run(pass.timRun_Timer()));
    EXPECT_EQ(readFile(bench.done("same")), "newer") << "now it may be replaced";
}

TEST_F(AgainTest, FilesWaitWhileTheListOfNamesakesCannotBeRead) {
    putNamesakes();
    const std::string list = bench.state.AppFolder + "/" + kNamesakesName;
    std::filesystem::create_directory(list);
    for (const std::size_t lines : {5U, 4U}) {
        ASSERT_TRUE(bench.runPass());
        EXPECT_EQ(bench.messages().size(), lines) << "it is said once";
        EXPECT_TRUE(bench.exists(bench.in("x/same")) && bench.exists(bench.in("y/same")));
    }
    std::filesystem::remove(list);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(readFile(bench.done("same")), "x");
}

TEST_F(AgainTest, WhatCannotBeRejectedStaysAndIsToldOnce) {
    writeFile(bench.in("a"), "a");
    std::filesystem::create_directory(bench.out("a.enc"));
    std::filesystem::remove(bench.state.settings.RejectFolder);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages().size(), 7U);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages().size(), 4U);
    std::filesystem::remove(bench.out("a.enc"));
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.messages()[3], "Encryped:  a - Sucessful: ");
    EXPECT_TRUE(bench.exists(bench.done("a")));
}

TEST_F(AgainTest, ANameThatBecomesTooLongForTheRejectedFolderLosesItsMiddle) {
    std::string name;
    for (int i = 0; i < 122; ++i) name += "\xC3\xA9";
    name += ".pdf";
    ASSERT_EQ(name.size(), 248U);
    for (const char* contents : {"first", "second", "third"}) {
        writeFile(bench.in(name), contents);
        std::filesystem::create_directory(bench.out(name + ".enc").substr(0, bench.out("").size() + 255));
        ASSERT_TRUE(bench.runPass());
    }
    Texts names = bench.names(bench.state.settings.RejectFolder);
    ASSERT_EQ(names.size(), 3U);
    Texts contents;
    for (const std::string& one : names) {
        contents.push_back(readFile(bench.rejected(one)));
        EXPECT_TRUE(one.ends_with("\xC3\xA9.pdf"));
        EXPECT_LE(one.size(), 255U);
        EXPECT_EQ(displayText(one), one) << "no character is cut in two";
    }
    std::sort(contents.begin(), contents.end());
    EXPECT_EQ(contents, (Texts{"first", "second", "third"}));
}

}  // namespace
}  // namespace vantrell::test
